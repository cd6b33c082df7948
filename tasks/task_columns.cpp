#include "tasks/task_columns.h"

#include "tasks/api/download_mode.h"

#include <limits>

namespace tollivar::tasks {

namespace {

using Int32 = std::numeric_limits<std::int32_t>;
using UInt32 = std::numeric_limits<std::uint32_t>;

/// Leading blanks, a sign, digits up to the first other character; saturating far outside of what
/// a column can hold.
std::int64_t leadingNumber(QStringView text)
{
    constexpr std::int64_t limit = std::int64_t{1} << 40;
    const QStringView number = text.trimmed();
    const bool isNegative = number.startsWith(u'-');
    std::int64_t value = 0;
    for (const QChar digit : number.sliced(isNegative || number.startsWith(u'+') ? 1 : 0)) {
        if (digit < u'0' || digit > u'9') {
            break;
        }
        value = std::min(limit, value * 10 + (digit.unicode() - u'0'));
    }
    return isNegative ? -value : value;
}

std::int32_t signedNumber(QStringView text)
{
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(leadingNumber(text), Int32::min(), Int32::max()));
}

std::uint32_t sizeNumber(QStringView text)
{
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(leadingNumber(text), Int32::min(), UInt32::max()));
}

struct FieldReader {
    const TaskInfo &task;

    QString operator()(QString TaskInfo::*field) const { return task.*field; }
    QString operator()(QString ConversionOptions::*field) const { return task.m_ConvOpts.*field; }
    QString operator()(int TaskInfo::*field) const { return QString::number(task.*field); }
    QString operator()(std::uint32_t TaskInfo::*field) const
    {
        return QString::number(static_cast<std::int32_t>(task.*field));
    }
    QString operator()(PackedDownloadMode /*field*/) const
    {
        return QString::number(packDownloadMode({.low = task.nModeLow, .high = task.nModeHigh}));
    }
};

struct FieldWriter {
    TaskInfo &task;
    const QString &text;

    void operator()(QString TaskInfo::*field) const { task.*field = text; }
    void operator()(QString ConversionOptions::*field) const { task.m_ConvOpts.*field = text; }
    void operator()(int TaskInfo::*field) const { task.*field = signedNumber(text); }
    void operator()(std::uint32_t TaskInfo::*field) const { task.*field = sizeNumber(text); }
    void operator()(PackedDownloadMode /*field*/) const
    {
        const DownloadMode mode = unpackDownloadMode(signedNumber(text));
        task.nModeLow = mode.low;
        task.nModeHigh = mode.high;
    }
};

} // namespace

const std::array<TaskColumn, kTaskColumnCount> kTaskColumns{{
    {u"strOriURL", &TaskInfo::strOriURL},
    {u"strDownloadUrl", &TaskInfo::strDownloadUrl},
    {u"strOutputFolder", &TaskInfo::strOutputFolder},
    {u"strOutputName", &TaskInfo::strOutputName},
    {u"strFileType", &TaskInfo::strFileType},
    {u"strCookies", &TaskInfo::strCookies},
    {u"strAgent", &TaskInfo::strAgent},
    {u"strReferer", &TaskInfo::strReferer},
    {u"dwSize", &TaskInfo::dwSize},
    {u"dwDownloadSize", &TaskInfo::dwDownloadSize},
    {u"bAutoRename", &TaskInfo::bAutoRename},
    {u"bFileCreated", &TaskInfo::bFileCreated},
    {u"nDownloadMode", PackedDownloadMode{}},
    {u"csAudioBitRateOpts", &ConversionOptions::m_csAudioBitRateOpts},
    {u"m_csAudioChannelOpts", &ConversionOptions::m_csAudioChannelOpts},
    {u"m_csAudioCodecOpts", &ConversionOptions::m_csAudioCodecOpts},
    {u"m_csAudioSampleRateOpts", &ConversionOptions::m_csAudioSampleRateOpts},
    {u"m_csConvParam", &ConversionOptions::m_csConvParam},
    {u"m_csOutputName", &ConversionOptions::m_csOutputName},
    {u"m_csProfileName", &ConversionOptions::m_csProfileName},
    {u"m_csType", &ConversionOptions::m_csType},
    {u"m_csVideoBitRateOpts", &ConversionOptions::m_csVideoBitRateOpts},
    {u"m_csVideoCodecOpts", &ConversionOptions::m_csVideoCodecOpts},
    {u"m_csVideoFrameRateOpts", &ConversionOptions::m_csVideoFrameRateOpts},
    {u"m_csVideoSizeOpts", &ConversionOptions::m_csVideoSizeOpts},
    {u"nProtocol", &TaskInfo::nProtocol},
    {u"strApp", &TaskInfo::strApp},
    {u"strFlashVer", &TaskInfo::strFlashVer},
    {u"strSwfUrl", &TaskInfo::strSwfUrl},
    {u"strTcUrl", &TaskInfo::strTcUrl},
    {u"strPageUrl", &TaskInfo::strPageUrl},
    {u"strPlayPath", &TaskInfo::strPlayPath},
    {u"nCompletedStatus", &TaskInfo::nCompletedStatus},
}};

QStringView columnName(TextColumn column)
{
    switch (column) {
    case TextColumn::DownloadUrl:
        return u"strDownloadUrl";
    case TextColumn::FileType:
        return u"strFileType";
    case TextColumn::Cookies:
        return u"strCookies";
    case TextColumn::Agent:
        return u"strAgent";
    case TextColumn::Referer:
        return u"strReferer";
    case TextColumn::OutputName:
        return u"strOutputName";
    }
    return {};
}

QStringView columnName(NumberColumn column)
{
    switch (column) {
    case NumberColumn::Size:
        return u"dwSize";
    case NumberColumn::DownloadSize:
        return u"dwDownloadSize";
    case NumberColumn::FileCreated:
        return u"bFileCreated";
    case NumberColumn::DownloadMode:
        return u"nDownloadMode";
    case NumberColumn::CompletedStatus:
        return u"nCompletedStatus";
    }
    return {};
}

bool isTextColumn(const TaskColumn &column)
{
    return std::holds_alternative<QString TaskInfo::*>(column.field) ||
           std::holds_alternative<QString ConversionOptions::*>(column.field);
}

QString columnText(const TaskInfo &task, const TaskColumn &column)
{
    return std::visit(FieldReader{task}, column.field);
}

void setColumnText(TaskInfo &task, const TaskColumn &column, const QString &text)
{
    std::visit(FieldWriter{task, text}, column.field);
}

} // namespace tollivar::tasks
