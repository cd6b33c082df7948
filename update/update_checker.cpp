#include "update/update_checker.h"

#include "platform/file_ops.h"
#include "update/update_info.h"
#include "update/version.h"

#include <QFile>

namespace tollivar::update {

using namespace Qt::StringLiterals;

namespace {

/// As good as for ever, and still a number that every clock can add.
constexpr std::chrono::hours kNoWait{24 * 365};

} // namespace

QString updateAddress(const QString &address, const QString &version)
{
    return address + (address.contains(u'?') ? u'&' : u'?') + u"ver="_s + version;
}

UpdateChecker::UpdateChecker(UpdatePlaces places, QString version, UpdateGet get,
                             platform::AppMessagePort owner, const platform::Clock &clock,
                             const RetryPauses &pauses)
    : m_places(std::move(places))
    , m_version(std::move(version))
    , m_get(std::move(get))
    , m_owner(std::move(owner))
    , m_clock(clock)
    , m_pauses(pauses)
    , m_thread(std::make_unique<platform::WorkerThread>([this] { run(); }))
{
    m_thread->resume();
}

UpdateChecker::~UpdateChecker()
{
    constexpr std::chrono::milliseconds kPatience{5'000};
    m_isStopping = true;
    m_stop.set();
    m_trigger.set();
    // The thread works on what goes away here, so there is no going on without its end.
    while (!m_thread->waitForEnd(kPatience)) {
        qWarning("the update check does not end");
    }
}

void UpdateChecker::check(CheckKind kind)
{
    m_kind = kind;
    m_trigger.set();
}

void UpdateChecker::run()
{
    RetrySchedule retries(m_pauses);
    std::chrono::milliseconds wait = kNoWait;
    for (;;) {
        const bool isTriggered = m_trigger.wait(wait);
        if (m_isStopping) {
            return;
        }
        if (!isTriggered && wait == kNoWait) {
            continue;
        }
        if (isTriggered) {
            retries.reset();
        }
        const CheckKind kind = isTriggered ? m_kind.load() : CheckKind::Automatic;
        wait = kNoWait;
        const GetResult result = checkOnce(kind);
        if (result != GetResult::Done && kind == CheckKind::Automatic) {
            if (const auto pause = retries.next()) {
                wait = *pause;
            }
        }
    }
}

GetResult UpdateChecker::checkOnce(CheckKind kind)
{
    const GetResult got =
        m_get(updateAddress(m_places.address, m_version), m_places.transit, m_stop);
    if (got == GetResult::Cancelled || m_isStopping) {
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
    storeCheckTime(m_places.local, m_clock.wallNow());
    tell(*result, kind);
    return got;
}

std::optional<UpdateResult> UpdateChecker::takeAnswer() const
{
    const UpdateInfo answer = readUpdateInfo(m_places.transit);
    if (compareVersions(answer.version, m_version) <= 0) {
        return UpdateResult::NoUpdate;
    }
    if (compareVersions(answer.version, readUpdateInfo(m_places.local).version) <= 0) {
        return UpdateResult::NoticedBefore;
    }
    QFile file(m_places.transit);
    if (!file.open(QIODevice::ReadOnly) ||
        !platform::replaceFile(m_places.local, file.read(kMaximumInfoBytes))) {
        qWarning("%s cannot be written", qPrintable(m_places.local));
        return std::nullopt;
    }
    return UpdateResult::News;
}

void UpdateChecker::tell(UpdateResult result, CheckKind kind) const
{
    m_owner.post(platform::AppMessageId::UpdateResult, static_cast<std::uint64_t>(result),
                 static_cast<std::uint64_t>(kind));
}

} // namespace tollivar::update
