#include "platform/message_port.h"

#include <QCoreApplication>
#include <QEvent>

#include <deque>
#include <map>
#include <mutex>

namespace tollivar::platform {

namespace {

/// A message's name for merging.
struct MergeKey {
    AppMessageId id = AppMessageId::TaskEvent;
    std::uint64_t first = 0;

    auto operator<=>(const MergeKey &) const = default;
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
    std::deque<AppMessage> messages;
    /// Places of waiting messages that a newer one may replace.
    std::map<MergeKey, std::size_t> mergeable;

    /// Joins a message to those that wait; true when the receiver has to be woken.
    bool join(const AppMessage &message, Delivery delivery)
    {
        if (delivery == Delivery::NewestWins) {
            const auto [place, isNew] =
                mergeable.try_emplace({message.id, message.first}, messages.size());
            if (!isNew) {
                messages[place->second] = message;
                return false;
            }
        }
        messages.push_back(message);
        return messages.size() == 1;
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
        QCoreApplication::postEvent(m_queue->receiver, new QEvent(wakeType()));
    }
}

AppMessageInbox::AppMessageInbox(Handler handler)
    : m_handler(std::move(handler))
    , m_queue(std::make_shared<AppMessagePort::Queue>())
{
    m_queue->receiver = this;
}

AppMessageInbox::~AppMessageInbox()
{
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
    std::deque<AppMessage> batch;
    {
        const std::lock_guard lock(m_queue->mutex);
        batch.swap(m_queue->messages);
        m_queue->mergeable.clear();
    }
    for (const AppMessage &message : batch) {
        m_handler(message);
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
