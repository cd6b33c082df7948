#pragma once

#include "companions/sniff_browser/sniff_arguments.h"
#include "platform/worker_thread.h"

#include <QByteArray>
#include <QObject>

#include <memory>
#include <vector>

namespace tollivar::sniff {

/// Hands chosen media on: to standard output and, unless a reader takes them there, to the running
/// program.
///
/// Threads: the main thread; the program is waited for elsewhere.
class RecordSender : public QObject {
    Q_OBJECT

public:
    explicit RecordSender(Recipient recipient) : m_recipient(recipient) {}
    ~RecordSender() override;
    RecordSender(const RecordSender &) = delete;
    RecordSender &operator=(const RecordSender &) = delete;

    /// One record or several, as writeAnswer() makes them.
    void send(const QByteArray &records);

Q_SIGNALS:
    /// How a send() ended: false when the program does not run, or does not answer.
    void sent(bool isTaken);

private:
    Recipient m_recipient;
    std::vector<std::unique_ptr<platform::WorkerThread>> m_threads;
};

} // namespace tollivar::sniff
