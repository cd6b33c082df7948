#include "ui/task_list/row_text.h"

#include "tasks/api/download_mode.h"
#include "tasks/api/failure_text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskState;

namespace {

/// Seconds left with this value show the megabytes instead of a percentage.
constexpr std::int32_t kShowsMegabytes = 65'535;

/// Whole kilobytes first: the rest of a kilobyte does not count.
double megabytes(std::uint32_t bytes)
{
    return (bytes >> 10U) / 1024.0;
}

std::uint32_t bytesDone(const RowSource &source)
{
    return source.progress.bytesDownloaded != 0 ? source.progress.bytesDownloaded
                                                : source.record.dwDownloadSize;
}

QString sizeText(const RowSource &source)
{
    const double done = megabytes(bytesDone(source));
    if (source.record.dwSize == tasks::kUnknownSize) {
        return QString::asprintf("%.2fMB/Unknown", done);
    }
    return QString::asprintf("%.2fMB/%.2fMB", done, megabytes(source.record.dwSize));
}

bool isRetryPending(const RowSource &source)
{
    return source.retryCount >= 1 && source.retryCount <= source.retrySetting;
}

QString retryLine(const RowSource &source)
{
    return u"Wait 5 secs before retry (%1)"_s.arg(source.retryCount);
}

struct Status {
    QString line{};
    QString detail{};
};

Status failedStatus(const RowSource &source)
{
    return {tasks::failureText(source.failedStage),
            isRetryPending(source) ? retryLine(source) : tasks::failureReason(source.failure)};
}

Status startedStatus(const RowSource &source)
{
    if (!isRetryPending(source)) {
        return {u"Downloading"_s};
    }
    return {tasks::failureText(source.failedStage) + tasks::failureReason(source.failure),
            retryLine(source)};
}

Status downloadingStatus(const RowSource &source)
{
    if (source.progress.secondsLeft == kShowsMegabytes) {
        return {
            QString::asprintf("Downloading - %.2fMB", megabytes(source.progress.bytesDownloaded))};
    }
    return {QString::asprintf("Downloading - %.2f%%",
                              static_cast<double>(source.progress.percentHundredths) / 100.0)};
}

Status completedStatus(const RowSource &source)
{
    if (source.convertingPercent) {
        return {QString::asprintf("Converting - %d%%", *source.convertingPercent)};
    }
    return {u"Completed"_s, source.conversionFailure};
}

/// True in the states in which a run neither goes on nor failed.
bool isResting(TaskState state)
{
    return state == TaskState::New || state == TaskState::Stopped || state == TaskState::Stopping ||
           state == TaskState::Removed;
}

bool isShownCompleted(const RowSource &source)
{
    return source.state == TaskState::Completed ||
           (isResting(source.state) && source.record.isFileComplete());
}

Status restingStatus(const RowSource &source)
{
    return source.record.isFileComplete() ? completedStatus(source) : Status{u"Stopped"_s};
}

Status statusOf(const RowSource &source)
{
    switch (source.state) {
    case TaskState::Waiting:
    case TaskState::StoppingToRestart:
        return {u"Waiting"_s};
    case TaskState::ResolvingPage:
        return {u"Parsing URL..."_s};
    case TaskState::TakingTitle:
        return {u"Parsing Title..."_s};
    case TaskState::Downloading:
        return downloadingStatus(source);
    case TaskState::Completed:
        return completedStatus(source);
    case TaskState::Failed:
        return failedStatus(source);
    case TaskState::Started:
        return startedStatus(source);
    case TaskState::New:
    case TaskState::Stopped:
    case TaskState::Stopping:
    case TaskState::Removed:
        break;
    }
    // A number that was a state once and is none now shows nothing.
    constexpr auto kFormerState = static_cast<TaskState>(6);
    return source.state == kFormerState ? Status{} : restingStatus(source);
}

QString timeLeftText(std::int32_t secondsLeft)
{
    if (secondsLeft == tasks::kUnknownSecondsLeft) {
        return u"Unknown"_s;
    }
    constexpr std::uint32_t kMinute = 60;
    constexpr std::uint32_t kHour = 3'600;
    const auto seconds = static_cast<std::uint32_t>(secondsLeft);
    return u"%1:%2:%3"_s.arg(seconds / kHour).arg(seconds % kHour / kMinute).arg(seconds % kMinute);
}

QString modeText(const tasks::TaskInfo &record, const TextLookup &texts)
{
    static constexpr std::array kQualities = {u"",      u" HD Auto", u" HD1080P", u" HD720P",
                                              u" 480P", u" 360P",    u" 240P"};
    QString name;
    switch (static_cast<tasks::DownloadMethod>(record.nModeLow)) {
    case tasks::DownloadMethod::Video:
        name = texts(u"strModeFLVAuto"_s);
        break;
    case tasks::DownloadMethod::VideoSite:
        name = texts(u"strModeYoutube"_s);
        break;
    case tasks::DownloadMethod::Flash:
        name = texts(u"strModeSWFAuto"_s);
        break;
    case tasks::DownloadMethod::Direct:
        name = texts(u"strModeDirectly"_s);
        break;
    }
    const auto quality = static_cast<std::size_t>(std::max(0, record.nModeHigh));
    return quality < kQualities.size() ? name + QString::fromUtf16(kQualities[quality]) : name;
}

std::optional<int> barOf(const RowSource &source)
{
    constexpr int kWhole = 10'000;
    constexpr int kHundredths = 100;
    if (isShownCompleted(source) && source.convertingPercent) {
        return std::clamp(*source.convertingPercent, 0, kHundredths) * kHundredths;
    }
    const float reached = source.progress.percentHundredths;
    // Without a size there is nothing to be a part of; a stream may still tell its percentage.
    const bool isPart = source.record.dwSize != tasks::kUnknownSize || reached > 0;
    if (source.state != TaskState::Downloading || !isPart ||
        source.progress.secondsLeft == kShowsMegabytes) {
        return std::nullopt;
    }
    return static_cast<int>(std::clamp(reached, 0.F, static_cast<float>(kWhole)));
}

} // namespace

QString translatedStatus(QString text, const TextLookup &texts)
{
    static const std::array<std::pair<QString, QString>, 7> kWords = {{
        {u"Waiting"_s, u"strWaiting"_s},
        {u"Stopped"_s, u"strStopped"_s},
        {u"Converting"_s, u"strConverting"_s},
        {u"Parsing"_s, u"strParsing"_s},
        {u"Downloading"_s, u"strDownloading"_s},
        {u"Completed"_s, u"strCompleted"_s},
        {u"Failed"_s, u"strFailed"_s},
    }};
    for (const auto &[english, id] : kWords) {
        text.replace(english, texts(id));
    }
    return text;
}

RowText rowText(const RowSource &source, const TextLookup &texts)
{
    const Status status = statusOf(source);
    RowText row{.path = source.record.outputPath(),
                .number = QString::number(source.ordinal + 1),
                .name = source.record.strOutputName,
                .size = sizeText(source),
                .status = translatedStatus(status.line, texts),
                .detail = status.detail,
                .target = source.record.strFileType.toUpper(),
                .mode = modeText(source.record, texts),
                .bar = barOf(source)};
    row.badge = row.target;
    row.badge.remove(u'.');
    if (source.state == TaskState::Downloading) {
        row.speed = QString::asprintf("%.2f KB/s", source.progress.bytesPerSecond / 1024.0);
        row.timeLeft = timeLeftText(source.progress.secondsLeft);
    }
    return row;
}

} // namespace tollivar::ui
