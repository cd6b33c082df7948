#include "tasks/api/status_text.h"

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

/// The codes that are shown: those of the task events, and some that only the list uses.
enum StatusCode : int {
    Idle = 0,
    ParsingAddress = 1,
    Converting = 2,  ///< percent
    Downloading = 3, ///< percent × 100
    ParsingTitle = 4,
    ParsingFailed = 5,
    DownloadFailed = 6,
    Completed = 8,
    Stopped = 9,
    Removed = 12,
    RecordChanged = 13,
    DownloadingUnknownSize = 14, ///< bytes
    Refreshed = 19,
};

constexpr int kRecordChangedKind = 1;
constexpr int kOrdinaryKind = 2;
constexpr double kBytesPerMegabyte = 1024.0 * 1024.0;

QString twoDecimals(double number)
{
    return QString::number(number, 'f', 2);
}

} // namespace

StatusText statusText(int code, std::int64_t value)
{
    const auto ordinary = [](const QString &text) { return StatusText{text, kOrdinaryKind}; };
    switch (static_cast<StatusCode>(code)) {
    case StatusCode::Idle:
        return ordinary(u"-"_s);
    case StatusCode::ParsingAddress:
        return ordinary(u"Parsing URL..."_s);
    case StatusCode::Converting:
        return ordinary(u"Converting - %1%"_s.arg(value));
    case StatusCode::Downloading:
        return ordinary(u"Downloading - %1%"_s.arg(twoDecimals(static_cast<double>(value) / 100)));
    case StatusCode::ParsingTitle:
        return ordinary(u"Parsing Title..."_s);
    case StatusCode::ParsingFailed:
        return ordinary(u"Parsing Failed"_s);
    case StatusCode::DownloadFailed:
        return ordinary(u"Download Failed"_s);
    case StatusCode::Completed:
        return ordinary(u"Completed"_s);
    case StatusCode::Stopped:
        return ordinary(u"Stopped"_s);
    case StatusCode::Removed:
    case StatusCode::Refreshed:
        return {std::nullopt, kOrdinaryKind};
    case StatusCode::RecordChanged:
        return {std::nullopt, kRecordChangedKind};
    case StatusCode::DownloadingUnknownSize:
        return ordinary(u"Downloading - %1MB"_s.arg(
            twoDecimals(static_cast<double>(value) / kBytesPerMegabyte)));
    }
    return ordinary(QString());
}

} // namespace tollivar::tasks
