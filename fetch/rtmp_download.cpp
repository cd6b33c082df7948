#include "fetch/rtmp_download.h"

#include "fetch/output_file.h"
#include "fetch/rtmp_session.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tollivar::fetch {

using std::chrono::milliseconds;
using tasks::TaskEventCode;

namespace {

constexpr milliseconds kProgressInterval{200};
/// The largest count that does not read as "unknown".
constexpr double kLargestCount = tasks::kUnknownSize - 1;
constexpr double kHundred = 100;
constexpr double kMilliseconds = 1'000;

std::uint32_t saturated(double count)
{
    return static_cast<std::uint32_t>(std::clamp(count, 0.0, kLargestCount));
}

/// One run of the read loop: what it has to remember between two reads.
class Playback {
public:
    Playback(tasks::TaskWorker &worker, tasks::TaskInfo &task, const platform::Clock &clock)
        : m_worker(worker)
        , m_task(task)
        , m_clock(clock)
        , m_start(clock.steadyNow())
        , m_lastReport(m_start)
    {
    }

    void count(std::size_t bytes)
    {
        m_bytes += bytes;
        m_task.dwDownloadSize = saturated(static_cast<double>(m_bytes));
    }

    void reportWhenDue(const RtmpSession &session)
    {
        const milliseconds now = m_clock.steadyNow();
        if (now - m_lastReport > kProgressInterval) {
            m_lastReport = now;
            report(session, now - m_start);
        }
    }

    void finish()
    {
        m_progress.bytesPerSecond = 0;
        m_progress.secondsLeft = 0;
        m_progress.bytesDownloaded = m_task.dwDownloadSize;
        m_worker.setProgress(m_progress);
    }

private:
    void report(const RtmpSession &session, milliseconds elapsed)
    {
        const RtmpProgress progress =
            rtmpProgress(session.duration(), session.timestamp(), m_bytes, elapsed);
        m_progress.percentHundredths = static_cast<float>(progress.percent * kHundred);
        m_progress.bytesPerSecond =
            static_cast<double>(m_bytes) * kMilliseconds / static_cast<double>(elapsed.count());
        m_progress.secondsLeft = progress.wholeSeconds;
        m_progress.bytesDownloaded = m_task.dwDownloadSize;
        m_task.dwSize = progress.projectedSize;
        m_worker.setProgress(m_progress);
        m_worker.setRecord(m_task);
        m_worker.post(TaskEventCode::SizeKnown, m_task.dwSize);
        m_worker.post(TaskEventCode::Progress, m_task.dwDownloadSize);
    }

    tasks::TaskWorker &m_worker;
    tasks::TaskInfo &m_task;
    const platform::Clock &m_clock;
    milliseconds m_start;
    milliseconds m_lastReport;
    tasks::TaskProgress m_progress;
    std::uint64_t m_bytes = 0;
};

StepResult play(RtmpSession &session, OutputFile &file, Playback &playback,
                platform::AutoResetEvent &stop)
{
    for (;;) {
        if (stop.poll()) {
            return StepResult::Stopped;
        }
        const RtmpRead read = session.read(file.room(OutputFile::kMaximumPiece));
        if (stop.poll()) {
            return StepResult::Stopped;
        }
        if (read.end == RtmpEnd::TimedOut) {
            const RtmpResume resumed = session.resume();
            if (stop.poll()) {
                return StepResult::Stopped;
            }
            if (resumed == RtmpResume::GoesOn) {
                continue;
            }
            return resumed == RtmpResume::TimedOut ? StepResult::Done : StepResult::Failed;
        }
        if (read.end != RtmpEnd::None) {
            return StepResult::Done;
        }
        file.filled(read.bytes);
        if (!file.isIntact()) {
            return StepResult::Failed;
        }
        playback.count(read.bytes);
        playback.reportWhenDue(session);
    }
}

} // namespace

RtmpProgress rtmpProgress(double duration, std::uint32_t timestamp, std::uint64_t bytes,
                          milliseconds elapsed)
{
    RtmpProgress progress;
    if (!(duration > 0)) {
        return progress;
    }
    constexpr double kTenths = 10;
    const double whole = duration * kMilliseconds;
    progress.percent =
        std::min(kHundred, std::floor(timestamp / whole * kHundred * kTenths) / kTenths);
    if (progress.percent <= 0) {
        return progress;
    }
    const double part = progress.percent / kHundred;
    constexpr double kLongest = std::numeric_limits<std::int32_t>::max();
    progress.wholeSeconds = static_cast<std::int32_t>(std::min(
        kLongest, std::round(static_cast<double>(elapsed.count()) / kMilliseconds / part)));
    progress.projectedSize = saturated(static_cast<double>(bytes) / part);
    return progress;
}

StepResult downloadRtmp(tasks::TaskWorker &worker, tasks::TaskInfo &task,
                        const platform::Clock &clock, std::chrono::seconds timeLimit)
{
    if (worker.stopEvent().poll()) {
        return StepResult::Stopped;
    }
    const auto file = OutputFile::create(worker, task);
    if (!file) {
        return StepResult::Failed;
    }
    task.dwDownloadSize = 0;
    task.dwSize = tasks::kUnknownSize;
    Playback playback(worker, task, clock);
    const auto session = RtmpSession::open(task, worker.stopEvent(), timeLimit);
    if (!session) {
        if (worker.stopEvent().poll()) {
            return StepResult::Stopped;
        }
        return StepResult::Failed;
    }
    const StepResult result = play(**session, *file, playback, worker.stopEvent());
    playback.finish();
    // The last piece is written only now.
    return result == StepResult::Done && !file->finish() ? StepResult::Failed : result;
}

} // namespace tollivar::fetch
