#pragma once

#include "tests/support/session_bus.h"

#include <QDBusVirtualObject>
#include <QStringList>

namespace tollivar::test {

/// A desktop's file manager, as far as it is asked to show files. It answers while the test runs
/// its event loop.
///
/// Fails the test when the bus does not take it.
class FileManagerService final : public QDBusVirtualObject {
public:
    enum class Answer { Shows, Refuses };

    /// The bus must outlive the service.
    explicit FileManagerService(const SessionBus &bus);
    ~FileManagerService() override;
    FileManagerService(const FileManagerService &) = delete;
    FileManagerService &operator=(const FileManagerService &) = delete;

    /// What it does from now on; it shows files at first.
    void answer(Answer answer) { m_answer = answer; }
    /// The addresses of the files that it was asked for so far.
    [[nodiscard]] const QStringList &asked() const { return m_asked; }

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    Answer m_answer = Answer::Shows;
    QStringList m_asked;
};

} // namespace tollivar::test
