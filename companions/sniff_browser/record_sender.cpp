#include "companions/sniff_browser/record_sender.h"

#include "platform/local_messages.h"
#include "platform/paths.h"
#include "platform/single_instance.h"

#include <algorithm>
#include <cstdio>

namespace tollivar::sniff {

namespace {

/// Whoever reads the output acts on each record at once.
void print(const QByteArray &records)
{
    std::fwrite(records.constData(), 1, static_cast<std::size_t>(records.size()), stdout);
    std::fflush(stdout);
}

} // namespace

bool deliverToProgram(const QByteArray &records)
{
    constexpr std::chrono::seconds kLimit{3};
    const auto data = platform::dataDirectory();
    return data && platform::sendLocalMessage(platform::instancePlace(*data).socket,
                                              platform::CopyDataId::CapturedText, records, kLimit)
                       .has_value();
}

RecordSender::RecordSender(Recipient recipient, DeliverRecords deliver,
                           std::chrono::milliseconds patience)
    : m_recipient(recipient)
    , m_deliver(std::move(deliver))
    , m_patience(patience)
    , m_link(std::make_shared<platform::OwnerLink<RecordSender>>(*this))
{
}

RecordSender::~RecordSender()
{
    using Clock = std::chrono::steady_clock;
    m_link->cut();
    const auto end = Clock::now() + m_patience;
    for (const auto &thread : m_threads) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (!thread->waitForEnd(std::max(left, std::chrono::milliseconds(0)))) {
            qWarning("chosen media may not have been handed over");
        }
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
    m_threads.push_back(
        std::make_unique<platform::WorkerThread>([link = m_link, deliver = m_deliver, records] {
            const bool isTaken = deliver(records);
            link->post([isTaken](RecordSender &sender) { Q_EMIT sender.sent(isTaken); });
        }));
    if (!m_threads.back()->resume()) {
        m_link->post([](RecordSender &sender) { Q_EMIT sender.sent(false); });
    }
}

} // namespace tollivar::sniff
