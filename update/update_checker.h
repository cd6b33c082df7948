#pragma once

#include "platform/auto_reset_event.h"
#include "platform/message_port.h"
#include "platform/worker_thread.h"
#include "update/update_info.h"
#include "update/update_schedule.h"

#include <QString>

#include <functional>
#include <memory>

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

struct UpdateTimes {
    RetryPauses pauses = kRetryPauses; ///< before each further attempt of an automatic check
    std::chrono::milliseconds patience{5'000}; ///< with a check that is to end with the program
};

/// The address with the program's version as its query.
[[nodiscard]] QString updateAddress(const QString &address, const QString &version);

/// Asks the server for a newer version, in the background. An automatic check that fails is tried
/// again after each of the pauses in turn; an explicit one is not, and ends the tries of an earlier
/// one.
///
/// Threads: made, used and destroyed on one thread; works on one of its own, begun with the first
///          check, and tells results by UpdateResult messages.
/// Owns:    its thread, and the two files from the first check on: nobody else reads them then.
/// Errors:  Unreachable where the system has no thread left for a check.
class UpdateChecker {
public:
    UpdateChecker(UpdatePlaces places, QString version, UpdateGet get,
                  platform::AppMessagePort owner, const UpdateTimes &times = {});
    /// Stops a check that is under way, and waits for its end up to the patience given; a thread
    /// that takes longer is let go, and nothing more is heard of it.
    ~UpdateChecker();
    UpdateChecker(const UpdateChecker &) = delete;
    UpdateChecker &operator=(const UpdateChecker &) = delete;

    /// Never waits. A check that is under way goes on; another follows it.
    void check(CheckKind kind);
    /// Whether automatic checks are wanted, as they are at first. When they are not, none is tried
    /// again, and nothing is heard of one that is under way.
    void allowAutomatic(bool isAllowed);
    /// What the local copy says: as of the last result of News or NoticedBefore.
    [[nodiscard]] UpdateInfo noticed() const;

private:
    struct Shared;
    /// Begins the thread unless it has begun; false when the system has none left.
    [[nodiscard]] bool begin();

    std::shared_ptr<Shared> m_shared;
    std::unique_ptr<platform::WorkerThread> m_thread; ///< null before the first check
    std::chrono::milliseconds m_patience;
};

} // namespace tollivar::update
