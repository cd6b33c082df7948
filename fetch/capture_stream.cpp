#include "fetch/capture_stream.h"

#include "fetch/parse_mode.h"
#include "fetch/process/child_process_runner.h"

namespace tollivar::fetch {

namespace {

constexpr std::chrono::milliseconds kRound{500};
constexpr QStringView kRecordEnd = u"\r\n\r\n";
/// No honest record is longer; what does not end by then is dropped.
constexpr qsizetype kLongestRecord = 1024L * 1024;

void handOver(QString &pending, const std::function<void(const QString &)> &onRecord)
{
    for (qsizetype end = pending.indexOf(kRecordEnd); end >= 0; end = pending.indexOf(kRecordEnd)) {
        const qsizetype length = end + kRecordEnd.size();
        onRecord(pending.left(length));
        pending.remove(0, length);
    }
    if (pending.size() > kLongestRecord) {
        pending.clear();
    }
}

} // namespace

QString captureBrowserCommandLine(int browserVersion)
{
    return QStringLiteral(".\\SniffBrowser.exe -parsemode ") +
           parseModes(browserVersion).front().toString();
}

void followCaptureBrowser(const QString &commandLine, platform::AutoResetEvent &stop,
                          const std::function<void(const QString &)> &onRecord)
{
    ChildProcessRunner browser;
    if (!browser.start(commandLine)) {
        return;
    }
    QString pending;
    QString chunk;
    for (;;) {
        const bool hasEnded = browser.hasEnded();
        const bool hasRead = browser.read(chunk);
        if (hasRead) {
            pending += chunk;
            handOver(pending, onRecord);
        }
        if (hasEnded && !hasRead) {
            return;
        }
        // Only an empty pipe is worth a pause.
        if (hasRead ? stop.poll() : !hasEnded && stop.wait(kRound)) {
            browser.kill();
            return;
        }
    }
}

} // namespace tollivar::fetch
