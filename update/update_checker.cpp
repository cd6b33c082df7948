#include "update/update_checker.h"

#include "platform/clock.h"
#include "platform/file_ops.h"
#include "update/version.h"

#include <QFile>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace tollivar::update {

using namespace Qt::StringLiterals;

QString updateAddress(const QString &address, const QString &version)
{
    return address + (address.contains(u'?') ? u'&' : u'?') + u"ver="_s + version;
}

/// What the thread uses, and what it is told; shared with it.
struct UpdateChecker::Shared {
    Shared(UpdatePlaces filesAndServer, QString ownVersion, UpdateGet fetch,
           platform::AppMessagePort receiver, const RetryPauses &pauses)
        : places(std::move(filesAndServer))
        , version(std::move(ownVersion))
        , get(std::move(fetch))
        , owner(std::move(receiver))
        , retries(pauses)
    {
    }

    const UpdatePlaces places;
    const QString version;
    const UpdateGet get;
    const platform::AppMessagePort owner;
    /// Ends a fetch.
    platform::AutoResetEvent stop;

    mutable std::mutex mutex;
    std::condition_variable changed;
    // Guarded by the mutex, like the rest.
    RetrySchedule retries;
    bool isStopping = false;
    bool isAutomaticAllowed = true;
    std::optional<CheckKind> wanted;
    /// When the failed automatic check is to be tried again.
    std::optional<std::chrono::steady_clock::time_point> retryAt;
    UpdateInfo noticed;

    void run();
    [[nodiscard]] std::optional<CheckKind> next();
    [[nodiscard]] GetResult check(CheckKind kind);
    [[nodiscard]] std::optional<UpdateResult> takeAnswer();
    void planRetry();
    [[nodiscard]] bool isUnwanted(CheckKind kind) const;
    void tell(UpdateResult result, CheckKind kind) const;
};

void UpdateChecker::Shared::run()
{
    while (const auto kind = next()) {
        const GetResult result = check(*kind);
        if (result != GetResult::Done && *kind == CheckKind::Automatic) {
            planRetry();
        }
    }
}

/// Waits for the next check; nothing when there will be none.
std::optional<CheckKind> UpdateChecker::Shared::next()
{
    std::unique_lock lock(mutex);
    const auto isWoken = [this] { return isStopping || wanted; };
    for (;;) {
        if (isWoken()) {
            retryAt.reset();
            retries.reset();
            return isStopping ? std::nullopt : std::exchange(wanted, std::nullopt);
        }
        if (!retryAt) {
            changed.wait(lock);
        } else if (const auto time = *retryAt; std::chrono::steady_clock::now() < time) {
            changed.wait_until(lock, time);
        } else {
            retryAt.reset();
            return CheckKind::Automatic;
        }
    }
}

void UpdateChecker::Shared::planRetry()
{
    const std::lock_guard lock(mutex);
    const auto pause = retries.next();
    if (pause && isAutomaticAllowed) {
        retryAt = std::chrono::steady_clock::now() + *pause;
    }
}

bool UpdateChecker::Shared::isUnwanted(CheckKind kind) const
{
    const std::lock_guard lock(mutex);
    return isStopping || (kind == CheckKind::Automatic && !isAutomaticAllowed);
}

GetResult UpdateChecker::Shared::check(CheckKind kind)
{
    const GetResult got = get(updateAddress(places.address, version), places.transit, stop);
    if (got == GetResult::Cancelled || isUnwanted(kind)) {
        return GetResult::Cancelled;
    }
    if (got != GetResult::Done) {
        const bool isUnreached =
            got == GetResult::NetworkError || got == GetResult::CannotCreateFile;
        // Whoever asked waits for a word, whatever went wrong.
        if (isUnreached || kind == CheckKind::Explicit) {
            tell(UpdateResult::Unreachable, kind);
        }
        return got;
    }
    const auto result = takeAnswer();
    // A version that could not be stored cannot be shown either, and is news again the next time.
    if (!result) {
        tell(UpdateResult::Unreachable, kind);
        return GetResult::CannotCreateFile;
    }
    storeCheckTime(places.local, platform::systemClock().wallNow());
    tell(*result, kind);
    return got;
}

/// What the answer that was fetched means; nothing when it is news that cannot be stored.
std::optional<UpdateResult> UpdateChecker::Shared::takeAnswer()
{
    const UpdateInfo answer = readUpdateInfo(places.transit);
    if (compareVersions(answer.version, version) <= 0) {
        return UpdateResult::NoUpdate;
    }
    const UpdateInfo local = readUpdateInfo(places.local);
    if (compareVersions(answer.version, local.version) <= 0) {
        const std::lock_guard lock(mutex);
        noticed = local;
        return UpdateResult::NoticedBefore;
    }
    QFile file(places.transit);
    if (!file.open(QIODevice::ReadOnly) ||
        !platform::replaceFile(places.local, file.read(kMaximumInfoBytes))) {
        qWarning("%s cannot be written", qPrintable(places.local));
        return std::nullopt;
    }
    const std::lock_guard lock(mutex);
    noticed = answer;
    return UpdateResult::News;
}

void UpdateChecker::Shared::tell(UpdateResult result, CheckKind kind) const
{
    owner.post(platform::AppMessageId::UpdateResult, static_cast<std::uint64_t>(result),
               static_cast<std::uint64_t>(kind));
}

UpdateChecker::UpdateChecker(UpdatePlaces places, QString version, UpdateGet get,
                             platform::AppMessagePort owner, const UpdateTimes &times)
    : m_shared(std::make_shared<Shared>(std::move(places), std::move(version), std::move(get),
                                        std::move(owner), times.pauses))
    , m_patience(times.patience)
{
}

UpdateChecker::~UpdateChecker()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isStopping = true;
    }
    m_shared->changed.notify_all();
    m_shared->stop.set();
    if (m_thread && !m_thread->waitForEnd(m_patience)) {
        qWarning("the update check does not end");
    }
}

bool UpdateChecker::begin()
{
    if (!m_thread) {
        m_thread = std::make_unique<platform::WorkerThread>([shared = m_shared] { shared->run(); });
        if (!m_thread->resume()) {
            m_thread.reset();
        }
    }
    return m_thread != nullptr;
}

void UpdateChecker::check(CheckKind kind)
{
    if (!begin()) {
        m_shared->tell(UpdateResult::Unreachable, kind);
        return;
    }
    {
        const std::lock_guard lock(m_shared->mutex);
        // Who asks gets an answer, whatever else is wanted meanwhile.
        if (m_shared->wanted != CheckKind::Explicit) {
            m_shared->wanted = kind;
        }
    }
    m_shared->changed.notify_all();
}

void UpdateChecker::allowAutomatic(bool isAllowed)
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isAutomaticAllowed = isAllowed;
        if (!isAllowed) {
            m_shared->retryAt.reset();
            if (m_shared->wanted == CheckKind::Automatic) {
                m_shared->wanted.reset();
            }
        }
    }
    m_shared->changed.notify_all();
}

UpdateInfo UpdateChecker::noticed() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->noticed;
}

} // namespace tollivar::update
