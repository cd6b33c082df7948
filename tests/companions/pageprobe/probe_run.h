#pragma once

#include "fetch/parser_answer.h"
#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace tollivar::platform {
class ChildProcess;
}

namespace tollivar::test {

/// What one run of PageProbe came to.
struct ProbeResult {
    int status = -1;
    QByteArray output; ///< of both streams
    std::vector<fetch::AnswerRecord> records;
};

/// The real PageProbe in surroundings of its own: temporary folder, log file, PATH.
///
/// The machine's browser is used; a yt-dlp only when the test installs one.
/// Owns: the surroundings. The destructor fails the test when a process or a file is left in them.
class ProbeSurroundings {
public:
    ProbeSurroundings();
    ~ProbeSurroundings();
    ProbeSurroundings(const ProbeSurroundings &) = delete;
    ProbeSurroundings &operator=(const ProbeSurroundings &) = delete;

    /// Puts a yt-dlp on PATH that is this shell script.
    void installExtractor(const QByteArray &script) const;
    /// Replaces the browser, by one that does not exist for instance.
    void setBrowser(const QString &path) { m_browser = path; }

    /// Absolute path of a file that scripts may write; not looked at for what is left behind.
    [[nodiscard]] QString noteFile() const { return m_sandbox.file(QStringLiteral("note")); }
    [[nodiscard]] QByteArray note() const { return m_sandbox.read(QStringLiteral("note")); }
    [[nodiscard]] QByteArray log() const { return m_sandbox.read(QStringLiteral("log")); }

    /// Runs it to its end.
    [[nodiscard]] ProbeResult run(const QStringList &arguments) const;
    /// The same for one address, with whatever else.
    [[nodiscard]] ProbeResult probe(const QString &address, const QStringList &more = {}) const;
    /// Starts it and leaves it running.
    [[nodiscard]] std::unique_ptr<platform::ChildProcess> start(const QStringList &arguments) const;

    /// What lies in the temporary folder now.
    [[nodiscard]] QStringList leftFiles() const;
    /// Command lines of the processes that live in these surroundings now.
    [[nodiscard]] QStringList leftProcesses() const;

private:
    [[nodiscard]] QString temporaryFolder() const { return m_sandbox.file(QStringLiteral("tmp")); }

    Sandbox m_sandbox;
    QString m_browser;
};

} // namespace tollivar::test
