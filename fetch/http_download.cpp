#include "fetch/http_download.h"

#include "fetch/http/http_client.h"
#include "fetch/output_file.h"
#include "fetch/speed_meter.h"
#include "fetch/text/media_type.h"

#include <limits>

namespace tollivar::fetch {

using std::chrono::milliseconds;
using tasks::TaskEventCode;

namespace {

constexpr std::size_t kReadSize = 8'192;
constexpr milliseconds kProgressInterval{1'500};
/// The largest count that does not read as "unknown".
constexpr std::uint32_t kLargestCount = tasks::kUnknownSize - 1;
constexpr int kStatusOk = 200;

constexpr QLatin1StringView kDefaultAgent(
    "Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; WPS; Mozilla/4.0 (compatible; MSIE "
    "6.0; Windows NT 5.1; SV1) ; .NET CLR 1.1.4322; .NET CLR 2.0.50727; .NET CLR 3.0.04506.648; "
    ".NET CLR 3.5.21022)");

/// A header's value from outside on one line, so that it cannot add a header of its own.
QByteArray headerValue(const QString &text)
{
    QString line = text;
    line.removeIf(
        [](QChar character) { return character.unicode() < 0x20 || character == u'\x7F'; });
    return line.toUtf8();
}

QByteArray requestHeaders(const tasks::TaskInfo &task)
{
    QByteArray headers = "Accept: */*\r\n";
    if (!task.strReferer.isEmpty()) {
        headers += "Referer: " + headerValue(task.strReferer) + "\r\n";
    }
    if (!task.strCookies.isEmpty()) {
        headers += "Cookie: " + headerValue(task.strCookies) + "\r\n";
    }
    return headers + "User-Agent: " + headerValue(task.strAgent) + "\r\n\r\n";
}

std::uint32_t announcedSize(const HttpClient &client)
{
    // A length beside a chunked body is wrong by the protocol's own rules.
    if (client.header("Transfer-Encoding").value_or(QByteArray()).toLower().contains("chunked")) {
        return tasks::kUnknownSize;
    }
    bool isNumber = false;
    const qulonglong length =
        client.header("Content-Length").value_or(QByteArray()).trimmed().toULongLong(&isNumber);
    return isNumber && length < tasks::kUnknownSize ? static_cast<std::uint32_t>(length)
                                                    : tasks::kUnknownSize;
}

/// One run of the read loop: what it has to remember between two reads.
class Transfer {
public:
    Transfer(tasks::TaskWorker &worker, tasks::TaskInfo &task, const platform::Clock &clock)
        : m_worker(worker)
        , m_task(task)
        , m_clock(clock)
        , m_start(clock.steadyNow())
        , m_lastReport(m_start)
    {
        m_task.dwDownloadSize = 0;
        m_progress = m_worker.progress();
    }

    void reportWhenDue()
    {
        const milliseconds now = m_clock.steadyNow();
        const bool hasSize = m_task.dwSize != tasks::kUnknownSize;
        if (now - m_lastReport <= kProgressInterval) {
            return;
        }
        m_lastReport = now;
        m_progress.bytesPerSecond = averageSpeed(m_bytes, now - m_start);
        m_progress.bytesDownloaded = m_task.dwDownloadSize;
        m_progress.secondsLeft = tasks::kUnknownSecondsLeft;
        if (hasSize) {
            m_progress.percentHundredths = percentHundredths(m_bytes, m_task.dwSize);
            m_progress.secondsLeft = secondsLeft(m_bytes, m_task.dwSize, m_progress.bytesPerSecond);
        }
        m_worker.setProgress(m_progress);
        m_worker.post(hasSize ? TaskEventCode::Progress : TaskEventCode::ProgressUnknownSize,
                      m_task.dwDownloadSize);
    }

    void count(std::size_t bytes)
    {
        m_bytes += bytes;
        m_task.dwDownloadSize =
            m_bytes < kLargestCount ? static_cast<std::uint32_t>(m_bytes) : kLargestCount;
    }

    void finish()
    {
        if (m_task.dwSize != tasks::kUnknownSize) {
            m_progress.percentHundredths = percentHundredths(m_bytes, m_task.dwSize);
        }
        m_progress.bytesPerSecond = 0;
        m_progress.secondsLeft = 0;
        m_progress.bytesDownloaded = m_task.dwDownloadSize;
        m_worker.setProgress(m_progress);
    }

private:
    tasks::TaskWorker &m_worker;
    tasks::TaskInfo &m_task;
    const platform::Clock &m_clock;
    milliseconds m_start;
    milliseconds m_lastReport;
    tasks::TaskProgress m_progress;
    std::uint64_t m_bytes = 0;
};

StepResult readBody(HttpClient &client, OutputFile &file, Transfer &transfer,
                    platform::AutoResetEvent &stop)
{
    for (;;) {
        if (stop.poll()) {
            return StepResult::Stopped;
        }
        transfer.reportWhenDue();
        const ReadResult read = client.read(file.room(kReadSize));
        if (read.end == ReadEnd::Stopped) {
            continue; // The poll above takes the request back.
        }
        if (read.bytes == 0) {
            transfer.finish();
            return StepResult::Done;
        }
        transfer.count(read.bytes);
        file.filled(read.bytes);
    }
}

/// The exchange when it was answered as it has to be; else null, with the worker's failure set.
std::unique_ptr<HttpClient> openMedia(tasks::TaskWorker &worker, const tasks::TaskInfo &task)
{
    auto client = HttpClient::open(
        {.address = task.strDownloadUrl, .headers = requestHeaders(task)}, worker.stopEvent());
    if (!client) {
        if (!worker.stopEvent().isSet()) {
            qWarning("a media address could not be opened: %s", qPrintable(client.error().text));
            worker.setFailure({.kind = tasks::ErrorKind::Network});
        }
        return nullptr;
    }
    if ((*client)->statusCode() != kStatusOk) {
        worker.setFailure({.kind = tasks::ErrorKind::HttpStatus,
                           .httpStatus = static_cast<std::uint32_t>((*client)->statusCode())});
        return nullptr;
    }
    return std::move(*client);
}

} // namespace

StepResult downloadHttp(tasks::TaskWorker &worker, tasks::TaskInfo &task,
                        const platform::Clock &clock)
{
    if (task.strAgent.isEmpty()) {
        task.strAgent = kDefaultAgent;
    }
    if (worker.stopEvent().poll()) {
        return StepResult::Stopped;
    }
    const auto client = openMedia(worker, task);
    if (!client) {
        return worker.stopEvent().poll() ? StepResult::Stopped : StepResult::Failed;
    }
    task.dwSize = announcedSize(*client);
    task.dwDownloadSize = 0;
    worker.post(TaskEventCode::SizeKnown, task.dwSize);
    if (task.strFileType.isEmpty()) {
        // An address without an ending: the server knows what it sends.
        task.strFileType = typeForMedia(client->header("Content-Type").value_or(QByteArray()));
    }
    const auto file = OutputFile::create(worker, task);
    if (!file) {
        return StepResult::Failed;
    }
    Transfer transfer(worker, task, clock);
    return readBody(*client, *file, transfer, worker.stopEvent());
}

} // namespace tollivar::fetch
