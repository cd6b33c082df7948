#include "convert/conversion_run.h"

#include "convert/converter_command.h"
#include "convert/converter_output.h"
#include "convert/option_check.h"
#include "fetch/process/child_process_runner.h"
#include "fetch/text/converting_name.h"

#include <QFile>
#include <QFileInfo>

namespace tollivar::convert {

using fetch::ChildProcessRunner;

namespace {

constexpr std::chrono::milliseconds kRound{1'000};
constexpr std::chrono::milliseconds kProbeRound{20};
/// What is kept of the output: its last lines.
constexpr qsizetype kKeptOutput = 4'096;

QString lastLineOf(const QString &output)
{
    QString last;
    const auto lines = output.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith(u"time=")) {
            last = text;
        }
    }
    return last;
}

bool readsAsMedia(const QString &path, platform::AutoResetEvent &stop)
{
    QString duration;
    return QFileInfo(path).size() > 0 && ProbeDuration(path, stop, duration);
}

/// Reads until the converter has ended; false when it was stopped.
bool follow(ChildProcessRunner &converter, platform::AutoResetEvent &stop,
            std::chrono::milliseconds round, const std::function<void(const QString &)> &onOutput)
{
    QString chunk;
    for (;;) {
        const bool hasEnded = converter.hasEnded();
        const bool hasRead = converter.read(chunk);
        if (hasRead) {
            onOutput(chunk);
        }
        if (hasEnded && !hasRead) {
            return true;
        }
        // Only an empty pipe is worth a pause.
        if (hasRead ? stop.poll() : !hasEnded && stop.wait(round)) {
            converter.kill();
            return false;
        }
    }
}

} // namespace

bool ProbeDuration(const QString &path, platform::AutoResetEvent &stop, QString &duration)
{
    ChildProcessRunner converter;
    if (!converter.start(probeCommandLine(path))) {
        return false;
    }
    QString output;
    const auto keep = [&output](const QString &chunk) {
        constexpr qsizetype kLongest = 1024L * 1024;
        if (output.size() < kLongest) {
            output += chunk;
        }
    };
    if (!follow(converter, stop, kProbeRound, keep)) {
        // The caller's own poll takes the request back.
        stop.set();
        return false;
    }
    const auto found = durationIn(output);
    duration = found.value_or(QString());
    return found.has_value();
}

ConversionResult RunConversion(tasks::TaskInfo task, platform::AutoResetEvent &stop,
                               const std::function<void(int)> &onPercent)
{
    if (!areOfAProfile(task.m_ConvOpts)) {
        return {.lastLine = QStringLiteral("the task's conversion options are damaged")};
    }
    QString duration;
    static_cast<void>(ProbeDuration(task.outputPath(), stop, duration));
    task.m_ConvOpts.m_nTotalSeconds = secondsOf(duration);
    task.m_ConvOpts.m_nLengthSeconds = task.m_ConvOpts.m_nTotalSeconds;
    task.m_ConvOpts.m_nStartSeconds = 0;
    const ConverterCommand command = BuildCommandLine(task);
    const QString output = convertedPath(task);
    ChildProcessRunner converter;
    ConversionResult result;
    if (stop.poll()) {
        result.end = ConversionEnd::Stopped;
        return result;
    }
    if (!converter.start(command.line, platform::OrphanEnd::Ask)) {
        return result;
    }
    QString text;
    ProgressReader progress(command.seconds);
    const bool hasEnded = follow(converter, stop, kRound, [&](const QString &chunk) {
        text = (text + chunk).right(kKeptOutput);
        if (const auto percent = progress.take(chunk)) {
            onPercent(*percent);
        }
    });
    if (!hasEnded) {
        result.end = ConversionEnd::Stopped;
        QFile::remove(fetch::convertingPath(output));
        return result;
    }
    std::uint32_t code = 0;
    result.lastLine = lastLineOf(text);
    result.isGood = converter.exitCode(code) && code == 0 && readsAsMedia(output, stop);
    if (!result.isGood) {
        // A converter that was killed has left it.
        QFile::remove(fetch::convertingPath(output));
        result.end = stop.poll() ? ConversionEnd::Stopped : ConversionEnd::Ended;
    }
    return result;
}

} // namespace tollivar::convert
