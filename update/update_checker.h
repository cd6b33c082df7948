#pragma once

#include "platform/auto_reset_event.h"
#include "platform/clock.h"
#include "platform/message_port.h"
#include "platform/worker_thread.h"
#include "update/update_schedule.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace tollivar::update {

/// What a check led to; the first value of the message that tells it. Never renumber.
enum class UpdateResult : std::uint64_t {
    Unreachable = 10, ///< the server was not reached
    News = 11,        ///< a newer version, not noticed before
    NoticedBefore = 12,
    NoUpdate = 13,
};

/// Who wants a check; the second value of the message.
enum class CheckKind : std::uint64_t { Automatic = 0, Explicit = 1 };

/// How fetching the answer ended.
enum class GetResult : int {
    NetworkError = 6,
    CannotCreateFile = 7,
    Cancelled = 10,
    Done = 11,
    Refused = 12, ///< another answer than 200, or one that is too large
};

/// Fetches an address into a file, and ends at once when `stop` is set.
using UpdateGet = std::function<GetResult(const QString &address, const QString &path,
                                          platform::AutoResetEvent &stop)>;

struct UpdatePlaces {
    QString address; ///< of the server's answer; the version is put behind it
    QString local;   ///< the copy of the last answer that was news
    QString transit; ///< where an answer is fetched into
};

/// The address with the program's version as its query.
[[nodiscard]] QString updateAddress(const QString &address, const QString &version);

/// Asks the server for a newer version, in the background. An automatic check that fails is tried
/// again after each of the pauses in turn; an explicit one is not, and ends the tries of an earlier
/// one.
///
/// Threads: made, used and destroyed on one thread; works on one of its own, and tells results by
///          UpdateResult messages.
/// Owns:    its thread and the two files. The clock is borrowed and must outlive it.
class UpdateChecker {
public:
    UpdateChecker(UpdatePlaces places, QString version, UpdateGet get,
                  platform::AppMessagePort owner, const platform::Clock &clock,
                  const RetryPauses &pauses);
    /// Stops a check that is under way, and waits for its end.
    ~UpdateChecker();
    UpdateChecker(const UpdateChecker &) = delete;
    UpdateChecker &operator=(const UpdateChecker &) = delete;

    /// Never waits. A check that is under way goes on; another follows it.
    void check(CheckKind kind);

private:
    void run();
    [[nodiscard]] GetResult checkOnce(CheckKind kind);
    /// What the answer that was fetched means; nothing when it is news that cannot be stored.
    [[nodiscard]] std::optional<UpdateResult> takeAnswer() const;
    void tell(UpdateResult result, CheckKind kind) const;

    UpdatePlaces m_places;
    QString m_version;
    UpdateGet m_get;
    platform::AppMessagePort m_owner;
    const platform::Clock &m_clock;
    RetryPauses m_pauses;
    platform::AutoResetEvent m_trigger;
    platform::AutoResetEvent m_stop;
    std::atomic<bool> m_isStopping = false;
    std::atomic<CheckKind> m_kind = CheckKind::Automatic;
    std::unique_ptr<platform::WorkerThread> m_thread;
};

} // namespace tollivar::update
