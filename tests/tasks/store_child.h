#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace tollivar::test {

/// One run of task_database_child, read line by line.
///
/// Owns: the process; the destructor kills one that still runs.
class StoreChild {
public:
    explicit StoreChild(const QStringList &arguments);
    ~StoreChild();
    StoreChild(const StoreChild &) = delete;
    StoreChild &operator=(const StoreChild &) = delete;

    /// The next line of its output without the line end; empty once it has ended.
    [[nodiscard]] QString readLine();
    /// Everything up to its end.
    [[nodiscard]] QString readAll();

    /// Ends it as SIGKILL does; what it has written can still be read.
    void kill();
    /// Closes its input and waits; its exit status, -1 when a signal ended it.
    int finish();

private:
    QProcess m_process;
};

} // namespace tollivar::test
