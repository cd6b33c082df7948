#include "platform/message_port.h"

#include <QCoreApplication>
#include <QEvent>

#include <deque>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace tollivar::platform {

namespace {

/// A message's name for merging.
struct MergeKey {
    AppMessageId id = AppMessageId::TaskEvent;
    std::uint64_t first = 0;

    bool operator==(const MergeKey &) const = default;
};

struct MergeKeyHash {
    std::size_t operator()(const MergeKey &key) const
    {
        return qHashMulti(0, static_cast<quint32>(key.id), key.first);
    }
};

QEvent::Type wakeType()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

struct AppMessagePort::Queue {
    std::mutex mutex;
    /// Null once the inbox is gone.
    QObject *receiver = nullptr;
    std::vector<AppMessage> messages;
    /// Places of waiting messages that a newer one may replace, unless the barrier stands behind.
    std::unordered_map<MergeKey, std::size_t, MergeKeyHash> mergeable;
    /// Messages before this place are never replaced: a newer one would overtake what was posted
    /// between the two.
    std::size_t barrier = 0;

    /// Joins a message to those that wait; true when the receiver has to be woken.
    bool join(const AppMessage &message, Delivery delivery)
    {
        if (delivery == Delivery::Each) {
            barrier = messages.size() + 1;
        } else {
            std::size_t &place =
                mergeable.try_emplace({message.id, message.first}, messages.size()).first->second;
            if (place >= barrier && place < messages.size()) {
                messages[place] = message;
                return false;
            }
            place = messages.size();
        }
        messages.push_back(message);
        return messages.size() == 1;
    }

    std::vector<AppMessage> takeAll()
    {
        const std::lock_guard lock(mutex);
        mergeable.clear();
        barrier = 0;
        return std::exchange(messages, {});
    }
};

AppMessagePort::AppMessagePort(std::shared_ptr<Queue> queue) : m_queue(std::move(queue)) {}

void AppMessagePort::post(AppMessageId id, std::uint64_t first, std::uint64_t second,
                          Delivery delivery) const
{
    if (!m_queue) {
        return;
    }
    const std::lock_guard lock(m_queue->mutex);
    if (m_queue->receiver == nullptr) {
        return;
    }
    if (m_queue->join({id, first, second}, delivery)) {
        // Under the lock, or the receiver could be gone before the event reaches it.
        QCoreApplication::postEvent(m_queue->receiver, new QEvent(wakeType()));
    }
}

/// What is being handed over; kept by the call that does so, for the inbox may go meanwhile.
struct AppMessageInbox::Batch {
    Handler handler;
    std::deque<AppMessage> messages;
};

AppMessageInbox::AppMessageInbox(Handler handler)
    : m_queue(std::make_shared<AppMessagePort::Queue>())
    , m_batch(std::make_shared<Batch>())
{
    m_batch->handler = std::move(handler);
    m_queue->receiver = this;
}

AppMessageInbox::~AppMessageInbox()
{
    m_batch->messages.clear();
    const std::lock_guard lock(m_queue->mutex);
    m_queue->receiver = nullptr;
    m_queue->messages.clear();
}

AppMessagePort AppMessageInbox::port() const
{
    return AppMessagePort(m_queue);
}

void AppMessageInbox::drain()
{
    const std::shared_ptr<Batch> batch = m_batch;
    const std::vector<AppMessage> arrived = m_queue->takeAll();
    batch->messages.insert(batch->messages.end(), arrived.begin(), arrived.end());
    if (batch->messages.size() > 1) {
        // Should the handler run an event loop, that loop goes on with the batch.
        QCoreApplication::postEvent(this, new QEvent(wakeType()));
    }
    while (!batch->messages.empty()) {
        const AppMessage message = batch->messages.front();
        batch->messages.pop_front();
        batch->handler(message);
    }
}

bool AppMessageInbox::event(QEvent *event)
{
    if (event->type() != wakeType()) {
        return QObject::event(event);
    }
    drain();
    return true;
}

} // namespace tollivar::platform
