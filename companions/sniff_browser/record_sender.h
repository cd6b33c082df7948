#pragma once

#include "companions/sniff_browser/sniff_arguments.h"
#include "platform/owner_link.h"
#include "platform/worker_thread.h"

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace tollivar::sniff {

/// Hands records to somebody, and waits for the answer; false when there is none.
using DeliverRecords = std::function<bool(const QByteArray &records)>;

/// To the running program. Blocks up to 3 seconds.
[[nodiscard]] bool deliverToProgram(const QByteArray &records);

/// Hands chosen media on: to standard output and, unless a reader takes them there, to the running
/// program.
///
/// Threads: the main thread; the program is waited for elsewhere.
/// Owns:    the threads that do so. The destructor lets them finish, as what was chosen is to arrive,
///          but waits no longer than `patience` for all of them.
class RecordSender : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kPatience{4'000};

    explicit RecordSender(Recipient recipient, DeliverRecords deliver = deliverToProgram,
                          std::chrono::milliseconds patience = kPatience);
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
    DeliverRecords m_deliver;
    std::chrono::milliseconds m_patience;
    /// Shared with the threads.
    std::shared_ptr<platform::OwnerLink<RecordSender>> m_link;
    std::vector<std::unique_ptr<platform::WorkerThread>> m_threads;
};

} // namespace tollivar::sniff
