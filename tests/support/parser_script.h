#pragma once

#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

namespace tollivar::test {

/// Tells the fake page parser what to do, and reads how it was called.
///
/// Works through the environment of the test process, which every started parser inherits; one
/// object at a time.
class ParserScript {
public:
    ParserScript();
    ~ParserScript();
    ParserScript(const ParserScript &) = delete;
    ParserScript &operator=(const ParserScript &) = delete;

    /// What it prints in its first mode.
    void answer(const QByteArray &text) const;
    /// What it prints when the mode stands behind its name without a blank.
    void answerSecondTry(const QByteArray &text) const;
    /// It prints its answer and never ends.
    void hang() const;

    /// The arguments of each run so far.
    [[nodiscard]] QList<QByteArrayList> calls() const;
    void forgetCalls() const;

private:
    static void clear();

    Sandbox m_sandbox;
};

/// The answer that names one medium to be fetched over HTTP.
[[nodiscard]] QByteArray parserAnswer(const QString &address, const QByteArray &type);

} // namespace tollivar::test
