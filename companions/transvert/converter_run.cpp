#include "companions/transvert/converter_run.h"

#include "fetch/text/converting_name.h"
#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/remove_on_end.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstdio>

namespace tollivar::transvert {

using namespace Qt::StringLiterals;
using platform::ChildProcess;

namespace {

constexpr std::chrono::hours kAsLongAsItTakes{24 * 365};
constexpr qsizetype kLongestLine = 8'192;

/// Hands on every line that the child prints, until it prints no more.
void copyLines(ChildProcess &child, const LineWriter &write)
{
    QByteArray rest;
    std::array<std::byte, 4'096> buffer{};
    while (child.waitForOutput(kAsLongAsItTakes)) {
        const std::size_t count = child.read(buffer);
        if (count == 0) {
            break;
        }
        rest.append(reinterpret_cast<const char *>(buffer.data()), static_cast<qsizetype>(count));
        for (qsizetype end = rest.indexOf('\n'); end >= 0; end = rest.indexOf('\n')) {
            const QByteArray line = translatedLine(rest.left(end));
            rest.remove(0, end + 1);
            if (!line.isEmpty()) {
                write(line);
            }
        }
        rest = rest.right(kLongestLine);
    }
}

int exitStatusOf(ChildProcess &child)
{
    while (!child.hasEnded()) {
        static_cast<void>(child.waitForOutput(std::chrono::milliseconds(10)));
    }
    return child.exitCode().value_or(1);
}

} // namespace

QByteArray translatedLine(const QByteArray &line)
{
    constexpr double kMicroseconds = 1e6;
    const QByteArray text = line.trimmed();
    if (text.startsWith("out_time_us=")) {
        const double seconds = text.mid(12).toDouble() / kMicroseconds;
        return "time=" + QByteArray::number(std::max(0.0, seconds), 'f', 2) + " bitrate=0.0kbits/s";
    }
    // The rest of a progress block is one word, an equals sign and a value.
    const qsizetype equals = text.indexOf('=');
    const bool isProgress = equals > 0 && !text.left(equals).contains(' ');
    return isProgress ? QByteArray() : line;
}

int runConverter(const ConverterRequest &request, const LineWriter &write)
{
    const QString target =
        request.output.isEmpty()
            ? QString()
            : fetch::convertingPath(QFileInfo(request.output).absoluteFilePath());
    QStringList notes;
    const QStringList arguments = ffmpegArguments(request, target, notes);
    for (const QString &note : notes) {
        write("note: " + note.toUtf8());
    }
    // Whoever asks for our end, the half file goes with us.
    const platform::RemoveOnEnd removal(target);
    auto child =
        ChildProcess::start(platform::joinCommandLine(QStringList{u"ffmpeg"_s} + arguments));
    if (!child) {
        write("ffmpeg cannot be started: " + child.error().text.toUtf8());
        return 1;
    }
    copyLines(**child, write);
    const int status = exitStatusOf(**child);
    if (request.output.isEmpty()) {
        return status;
    }
    const bool isWhole = status == 0 && QFileInfo(target).size() > 0;
    if (isWhole && std::rename(QFile::encodeName(target).constData(),
                               QFile::encodeName(request.output).constData()) == 0) {
        return 0;
    }
    QFile::remove(target);
    return status == 0 ? 1 : status;
}

} // namespace tollivar::transvert
