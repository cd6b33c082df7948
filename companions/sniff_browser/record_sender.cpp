#include "companions/sniff_browser/record_sender.h"

#include "platform/local_messages.h"
#include "platform/paths.h"
#include "platform/single_instance.h"

#include <cstdio>

namespace tollivar::sniff {

namespace {

constexpr std::chrono::seconds kLimit{3};

/// Whoever reads the output acts on each record at once.
void print(const QByteArray &records)
{
    std::fwrite(records.constData(), 1, static_cast<std::size_t>(records.size()), stdout);
    std::fflush(stdout);
}

bool isTakenByProgram(const QByteArray &records)
{
    const auto data = platform::dataDirectory();
    return data && platform::sendLocalMessage(platform::instancePlace(*data).socket,
                                              platform::CopyDataId::CapturedText, records, kLimit)
                       .has_value();
}

} // namespace

RecordSender::~RecordSender()
{
    for (const auto &thread : m_threads) {
        // Longer than a thread can take.
        static_cast<void>(thread->waitForEnd(2 * kLimit));
    }
}

void RecordSender::send(const QByteArray &records)
{
    print(records);
    if (m_recipient == Recipient::Reader) {
        Q_EMIT sent(true);
        return;
    }
    std::erase_if(m_threads, [](const auto &thread) { return thread->hasEnded(); });
    m_threads.push_back(std::make_unique<platform::WorkerThread>([this, records] {
        const bool isTaken = isTakenByProgram(records);
        QMetaObject::invokeMethod(
            this, [this, isTaken] { Q_EMIT sent(isTaken); }, Qt::QueuedConnection);
    }));
    m_threads.back()->resume();
}

} // namespace tollivar::sniff
