#include "fetch/page_resolver.h"

#include "fetch/process/child_process_runner.h"
#include "fetch/text/file_naming.h"

namespace tollivar::fetch {

namespace {

constexpr std::chrono::milliseconds kReadPause{300};
/// A parser that says more has nothing to say; what follows is not kept.
constexpr qsizetype kMaximumAnswer = 16LL * 1024 * 1024;

/// Characters that could end the quoted argument, or hide what follows, percent-encoded.
QString asOneArgument(const QString &address)
{
    QString safe;
    for (const QChar character : address) {
        const char16_t code = character.unicode();
        const bool isRisky = code < 0x20 || code == u'"' || code == 0x7F;
        safe += isRisky ? QStringLiteral("%%1").arg(int{code}, 2, 16, QLatin1Char('0')).toUpper()
                        : QString(character);
    }
    if (safe.endsWith(u'\\')) {
        // Before the closing quote it would make the quote a part of the argument.
        safe.chop(1);
        safe += QStringLiteral("%5C");
    }
    return safe;
}

bool isFetched(const QString &address, int protocol)
{
    const bool isHttp = address.startsWith(u"http://", Qt::CaseInsensitive) ||
                        address.startsWith(u"https://", Qt::CaseInsensitive);
    const bool isStream = address.startsWith(u"rtmp", Qt::CaseInsensitive);
    return protocol == tasks::kProtocolHttp ? isHttp : isStream;
}

} // namespace

QString parserCommandLine(const QString &address, QStringView modeSeparator, QStringView mode,
                          QStringView type)
{
    return QStringLiteral("PageProbe.exe -url \"%1\" -parsemode%2%3 -parsetype %4 -sniffcache true")
        .arg(asOneArgument(address), modeSeparator, mode, type);
}

void applyAnswer(const AnswerRecord &record, tasks::TaskInfo &task)
{
    task.strDownloadUrl = isFetched(record.address, record.protocol) ? record.address : QString();
    task.strFileType = harmlessFileType(record.extension);
    task.strCookies = record.cookies;
    task.strAgent = record.agent;
    task.strReferer = record.referer;
    task.nProtocol = record.protocol;
    task.strApp = record.app;
    task.strFlashVer = record.flashVer;
    task.strSwfUrl = record.swfUrl;
    task.strTcUrl = record.tcUrl;
    task.strPageUrl = record.pageUrl;
    task.strPlayPath = record.playPath;
}

ParserRun runParser(platform::AutoResetEvent &stop, const QString &commandLine)
{
    ChildProcessRunner parser;
    if (!parser.start(commandLine)) {
        return {};
    }
    QString answer;
    QString chunk;
    const auto readChunk = [&] {
        if (!parser.read(chunk)) {
            return false;
        }
        if (answer.size() < kMaximumAnswer) {
            answer += chunk;
        }
        return true;
    };
    for (;;) {
        const bool hasRead = readChunk();
        if (!hasRead && parser.hasEnded() && !readChunk()) {
            break;
        }
        // Only an empty pipe is worth a pause.
        if (hasRead ? stop.poll() : stop.wait(kReadPause)) {
            parser.kill();
            return {.result = StepResult::Stopped};
        }
    }
    return {.result = StepResult::Done, .records = readAnswer(answer)};
}

StepResult resolvePage(platform::AutoResetEvent &stop, const QString &commandLine,
                       tasks::TaskInfo &task)
{
    const ParserRun run = runParser(stop, commandLine);
    if (!run.records.empty()) {
        applyAnswer(run.records.front(), task);
    }
    return run.result;
}

} // namespace tollivar::fetch
