#include "companions/capture/profile_folder.h"

#include "platform/file_lock.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

namespace tollivar::capture {

using platform::ErrorKind;
using platform::failure;

namespace {

constexpr QLatin1StringView kPrefix("tollivar-capture-");
/// The guardian holds it as long as it lives.
constexpr QLatin1StringView kLockName("/guardian.lock");
/// A younger folder may not have its lock yet.
constexpr qint64 kYoungestLeftOver = 60;

void removeLeftOvers()
{
    const auto folders =
        QDir(QDir::tempPath())
            .entryInfoList({kPrefix + QStringLiteral("*")}, QDir::Dirs | QDir::NoSymLinks);
    const QDateTime now = QDateTime::currentDateTime();
    for (const QFileInfo &folder : folders) {
        const bool isOld = folder.lastModified().secsTo(now) > kYoungestLeftOver;
        if (!isOld || folder.ownerId() != QFileInfo(QDir::homePath()).ownerId()) {
            continue;
        }
        if (platform::FileLock::take(folder.filePath() + kLockName)) {
            QDir(folder.filePath()).removeRecursively();
        }
    }
}

} // namespace

platform::Result<QString> newProfilePath()
{
    const QFileInfo place(QDir::tempPath());
    if (!place.isDir() || !place.isWritable()) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("nothing can be written in %1").arg(place.filePath()));
    }
    removeLeftOvers();
    // Short: the browser keeps a socket below it, whose whole path has to fit into 107 bytes.
    return place.absoluteFilePath() + QLatin1Char('/') + kPrefix +
           QString::number(QRandomGenerator::system()->generate64(), 36);
}

} // namespace tollivar::capture
