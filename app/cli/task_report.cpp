#include "app/cli/task_report.h"

#include "tasks/api/download_mode.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace tollivar::app {

namespace {

QString eventName(ReportKind kind)
{
    switch (kind) {
    case ReportKind::Added:
        return QStringLiteral("added");
    case ReportKind::Resolving:
        return QStringLiteral("resolving");
    case ReportKind::Title:
        return QStringLiteral("title");
    case ReportKind::Downloading:
        return QStringLiteral("downloading");
    case ReportKind::Progress:
        return QStringLiteral("progress");
    case ReportKind::Converting:
        return QStringLiteral("converting");
    case ReportKind::Retry:
        return QStringLiteral("retry");
    case ReportKind::Completed:
        return QStringLiteral("completed");
    case ReportKind::Failed:
        return QStringLiteral("failed");
    case ReportKind::Stopped:
        return QStringLiteral("stopped");
    }
    return {};
}

void insertText(QJsonObject &object, const QString &key, const QString &value)
{
    if (!value.isEmpty()) {
        object.insert(key, value);
    }
}

void insertProgress(QJsonObject &object, const tasks::TaskInfo &task,
                    const tasks::TaskProgress &progress)
{
    object.insert(QStringLiteral("downloaded"), qint64{progress.bytesDownloaded});
    object.insert(QStringLiteral("speed"), progress.bytesPerSecond);
    if (progress.secondsLeft != tasks::kUnknownSecondsLeft) {
        object.insert(QStringLiteral("secondsLeft"), progress.secondsLeft);
    }
    if (task.dwSize != tasks::kUnknownSize) {
        object.insert(QStringLiteral("percent"), double{progress.percentHundredths} / 100.0);
    }
}

} // namespace

QString finishedPath(const TaskReport &report)
{
    return report.path.isEmpty() ? report.task.outputPath() : report.path;
}

QByteArray reportJson(const TaskReport &report)
{
    QJsonObject object{
        {QStringLiteral("event"), eventName(report.kind)},
    };
    if (report.row != 0) {
        object.insert(QStringLiteral("rowid"), qint64{report.row});
    }
    insertText(object, QStringLiteral("address"), report.task.strOriURL);
    insertText(object, QStringLiteral("name"), report.task.strOutputName);
    if (report.task.bFileCreated != 0) {
        object.insert(QStringLiteral("path"), finishedPath(report));
    }
    object.insert(QStringLiteral("size"), report.task.dwSize == tasks::kUnknownSize
                                              ? QJsonValue()
                                              : QJsonValue(qint64{report.task.dwSize}));
    if (report.progress) {
        insertProgress(object, report.task, *report.progress);
    }
    if (report.convertedPercent) {
        object.insert(QStringLiteral("percent"), *report.convertedPercent);
    }
    insertText(object, QStringLiteral("reason"), report.reason);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString storedState(const tasks::TaskInfo &task)
{
    if (task.nCompletedStatus != 0) {
        return QStringLiteral("completed");
    }
    return task.bFileCreated != 0 ? QStringLiteral("stopped") : QStringLiteral("new");
}

QByteArray storedTaskJson(tasks::RowId row, const tasks::TaskInfo &task)
{
    const tasks::ConversionOptions &options = task.m_ConvOpts;
    const QJsonObject object{
        {QStringLiteral("rowid"), qint64{row}},
        {QStringLiteral("state"), storedState(task)},
        {QStringLiteral("strOriURL"), task.strOriURL},
        {QStringLiteral("strDownloadUrl"), task.strDownloadUrl},
        {QStringLiteral("strOutputFolder"), task.strOutputFolder},
        {QStringLiteral("strOutputName"), task.strOutputName},
        {QStringLiteral("strFileType"), task.strFileType},
        {QStringLiteral("strCookies"), task.strCookies},
        {QStringLiteral("strAgent"), task.strAgent},
        {QStringLiteral("strReferer"), task.strReferer},
        {QStringLiteral("dwSize"),
         task.dwSize == tasks::kUnknownSize ? qint64{-1} : qint64{task.dwSize}},
        {QStringLiteral("dwDownloadSize"), qint64{task.dwDownloadSize}},
        {QStringLiteral("bAutoRename"), task.bAutoRename},
        {QStringLiteral("bFileCreated"), task.bFileCreated},
        {QStringLiteral("nDownloadMode"),
         tasks::packDownloadMode({.low = task.nModeLow, .high = task.nModeHigh})},
        {QStringLiteral("csAudioBitRateOpts"), options.m_csAudioBitRateOpts},
        {QStringLiteral("m_csAudioChannelOpts"), options.m_csAudioChannelOpts},
        {QStringLiteral("m_csAudioCodecOpts"), options.m_csAudioCodecOpts},
        {QStringLiteral("m_csAudioSampleRateOpts"), options.m_csAudioSampleRateOpts},
        {QStringLiteral("m_csConvParam"), options.m_csConvParam},
        {QStringLiteral("m_csOutputName"), options.m_csOutputName},
        {QStringLiteral("m_csProfileName"), options.m_csProfileName},
        {QStringLiteral("m_csType"), options.m_csType},
        {QStringLiteral("m_csVideoBitRateOpts"), options.m_csVideoBitRateOpts},
        {QStringLiteral("m_csVideoCodecOpts"), options.m_csVideoCodecOpts},
        {QStringLiteral("m_csVideoFrameRateOpts"), options.m_csVideoFrameRateOpts},
        {QStringLiteral("m_csVideoSizeOpts"), options.m_csVideoSizeOpts},
        {QStringLiteral("nProtocol"), task.nProtocol},
        {QStringLiteral("strApp"), task.strApp},
        {QStringLiteral("strFlashVer"), task.strFlashVer},
        {QStringLiteral("strSwfUrl"), task.strSwfUrl},
        {QStringLiteral("strTcUrl"), task.strTcUrl},
        {QStringLiteral("strPageUrl"), task.strPageUrl},
        {QStringLiteral("strPlayPath"), task.strPlayPath},
        {QStringLiteral("nCompletedStatus"), task.nCompletedStatus},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace tollivar::app
