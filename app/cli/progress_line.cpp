#include "app/cli/progress_line.h"

#include <QStringList>

namespace tollivar::app {

namespace {

constexpr double kBytesPerMegabyte = 1024.0 * 1024.0;

QString megabytes(std::uint32_t bytes)
{
    return QString::number(bytes / kBytesPerMegabyte, 'f', 2);
}

QString sizes(std::uint32_t done, std::uint32_t whole)
{
    if (whole == tasks::kUnknownSize) {
        return megabytes(done) + QStringLiteral(" MB");
    }
    return megabytes(done) + QStringLiteral("/") + megabytes(whole) + QStringLiteral(" MB");
}

QString duration(std::int32_t seconds)
{
    const auto twoDigits = [](int number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    return QStringLiteral("%1:%2:%3")
        .arg(QString::number(seconds / 3600), twoDigits(seconds / 60 % 60),
             twoDigits(seconds % 60));
}

} // namespace

QString progressLine(const QString &status, const tasks::TaskInfo &task,
                     const tasks::TaskProgress &progress, int columns)
{
    QStringList parts{status};
    if (progress.bytesDownloaded > 0) {
        parts.append(sizes(progress.bytesDownloaded, task.dwSize));
    }
    if (progress.bytesPerSecond > 0) {
        parts.append(QString::number(progress.bytesPerSecond / 1024.0, 'f', 2) +
                     QStringLiteral(" KB/s"));
    }
    if (progress.secondsLeft > 0) {
        parts.append(duration(progress.secondsLeft) + QStringLiteral(" left"));
    }
    QString figures = parts.join(QStringLiteral("  "));
    const qsizetype room = std::max<qsizetype>(columns - figures.size() - 3, 0);
    const QString name = task.strOutputName + task.strFileType;
    if (room == 0) {
        return figures;
    }
    return figures + QStringLiteral("  ") +
           (name.size() <= room ? name : name.left(room - 1) + QChar(u'…'));
}

} // namespace tollivar::app
