#include "app/cli/probe_command.h"

#include "app/cli/exit_status.h"
#include "app/cli/standard_streams.h"
#include "app/task_request.h"
#include "fetch/page_resolver.h"
#include "platform/interrupt.h"
#include "platform/message_port.h"
#include "platform/worker_thread.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tollivar::app {

namespace {

using Fields = std::vector<std::pair<QString, QString>>;

/// The record's keys and values in the answer's order; values that are empty are left out.
Fields fieldsOf(const fetch::AnswerRecord &record)
{
    Fields fields = {
        {QStringLiteral("protocol"), QString::number(record.protocol)},
        {QStringLiteral("app"), record.app},
        {QStringLiteral("flashver"), record.flashVer},
        {QStringLiteral("swfurl"), record.swfUrl},
        {QStringLiteral("tcurl"), record.tcUrl},
        {QStringLiteral("pageurl"), record.pageUrl},
        {QStringLiteral("playpath"), record.playPath},
        {QStringLiteral("url"), record.address},
        {QStringLiteral("title"), record.title},
        {QStringLiteral("type"), record.typeDescription},
        {QStringLiteral("folder"), record.folder},
        {QStringLiteral("cookies"), record.cookies},
        {QStringLiteral("agent"), record.agent},
        {QStringLiteral("referer"), record.referer},
        {QStringLiteral("location"), record.location},
    };
    std::erase_if(fields, [](const auto &field) { return field.second.isEmpty(); });
    return fields;
}

QByteArray asJson(const std::vector<fetch::AnswerRecord> &records)
{
    QJsonArray list;
    for (const fetch::AnswerRecord &record : records) {
        QJsonObject object;
        for (const auto &[key, value] : fieldsOf(record)) {
            object.insert(key, value);
        }
        list.append(object);
    }
    return QJsonDocument(list).toJson(QJsonDocument::Indented);
}

QByteArray asText(const std::vector<fetch::AnswerRecord> &records)
{
    QString text;
    for (const fetch::AnswerRecord &record : records) {
        for (const auto &[key, value] : fieldsOf(record)) {
            text += key + QStringLiteral(": ") + printable(value) + QLatin1Char('\n');
        }
        text += QLatin1Char('\n');
    }
    return text.toUtf8();
}

/// Runs the parser on a thread of its own, so that an interrupt reaches us meanwhile.
fetch::ParserRun runParserInterruptibly(const QString &commandLine)
{
    platform::AutoResetEvent stop;
    fetch::ParserRun run;
    QEventLoop loop;
    const platform::AppMessageInbox inbox([&loop](const platform::AppMessage &) { loop.quit(); });
    platform::WorkerThread thread([&stop, &run, commandLine, port = inbox.port()] {
        run = fetch::runParser(stop, commandLine);
        port.post(platform::AppMessageId::TaskEvent, 0, 0);
    });
    const platform::InterruptWatch interrupt(kInterrupted, [&stop] { stop.set(); });
    if (!thread.resume()) {
        return run;
    }
    loop.exec();
    // The thread borrows from this frame, so the frame stays until it has ended.
    while (!thread.waitForEnd(std::chrono::seconds(1))) {
    }
    return run;
}

} // namespace

int runProbe(const CliProbe &probe)
{
    const auto address = checkedAddress(probe.address);
    if (!address) {
        complain(address.error().text);
        return kBadUsage;
    }
    const auto run = runParserInterruptibly(
        fetch::parserCommandLine(*address, u" ", u"PARSE_MODE_IE7", u"PARSE_TYPE_FLVAUTO"));
    if (run.result == fetch::StepResult::Stopped) {
        return kInterrupted;
    }
    if (probe.output == CliOutput::Json) {
        writeOutput(asJson(run.records));
    }
    if (run.records.empty()) {
        complain(run.result == fetch::StepResult::ParseFailed
                     ? QStringLiteral("the page parser cannot be started; reinstall Tollivar")
                     : QStringLiteral("no media was found at %1").arg(*address));
        return kTaskFailed;
    }
    if (probe.output == CliOutput::Text) {
        writeOutput(asText(run.records));
    }
    return kAllCompleted;
}

} // namespace tollivar::app
