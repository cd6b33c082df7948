#pragma once

#include "platform/app_messages.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>

namespace tollivar::platform {

/// One posted application message; the meaning of the two values belongs to its number.
struct AppMessage {
    AppMessageId id = AppMessageId::TaskEvent;
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

/// How a message joins those that still wait for the receiver.
enum class Delivery {
    Each,      ///< queued behind all others; never merged, dropped or reordered
    NewestWins ///< takes the place of a waiting message with the same id and first value, unless an
               ///< Each has been posted since
};

/// The sending end of an AppMessageInbox: a small handle that may outlive the receiver.
///
/// Threads: any number of threads may post through copies of one port at the same time; messages
///          of one sender arrive in the order in which they were posted.
/// Errors:  a message posted through an empty port, or to a receiver that is gone, is dropped.
class AppMessagePort {
public:
    AppMessagePort() = default;

    /// Never blocks longer than another post takes; wakes the receiver once per batch.
    void post(AppMessageId id, std::uint64_t first, std::uint64_t second,
              Delivery delivery = Delivery::Each) const;

    [[nodiscard]] explicit operator bool() const { return m_queue != nullptr; }

private:
    friend class AppMessageInbox;
    struct Queue;
    explicit AppMessagePort(std::shared_ptr<Queue> queue);
    std::shared_ptr<Queue> m_queue;
};

/// The receiving end: hands posted messages to a handler on the thread that made the inbox.
///
/// Threads: made, used and destroyed on one thread that runs an event loop; the handler runs there.
///          While a batch is handed over, further messages wait for the next turn of the loop, so
///          that a flood starves neither timers nor painting. The handler may run an event loop of
///          its own (a dialog does): the rest of the batch arrives there, in order. It may also
///          destroy the inbox.
/// Owns:    the queue, together with the ports; what still waits is dropped at destruction.
class AppMessageInbox final : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const AppMessage &)>;

    explicit AppMessageInbox(Handler handler);
    ~AppMessageInbox() override;
    AppMessageInbox(const AppMessageInbox &) = delete;
    AppMessageInbox &operator=(const AppMessageInbox &) = delete;

    [[nodiscard]] AppMessagePort port() const;

    /// Hands over at once what waits now; for a caller that is about to leave its event loop.
    void drain();

    bool event(QEvent *event) override;

private:
    struct Batch;
    std::shared_ptr<AppMessagePort::Queue> m_queue;
    std::shared_ptr<Batch> m_batch;
};

} // namespace tollivar::platform
