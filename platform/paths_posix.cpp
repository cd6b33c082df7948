#include "platform/build_config.h"
#include "platform/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

/// The variable's folder; a relative one does not count.
QString folderFrom(const char *variable)
{
    const QString folder = QDir::cleanPath(qEnvironmentVariable(variable));
    return QDir::isAbsolutePath(folder) ? folder : QString();
}

Result<QString> folderFromOrHome(const char *variable, QLatin1StringView belowHome)
{
    if (QString folder = folderFrom(variable); !folder.isEmpty()) {
        return folder;
    }
    const QString home = folderFrom("HOME");
    if (home.isEmpty()) {
        return failure(
            ErrorKind::AskUser,
            QStringLiteral("neither %1 nor HOME names a folder").arg(QLatin1StringView(variable)));
    }
    return QDir::cleanPath(home + QLatin1Char('/') + belowHome);
}

/// Empty unless the program carries its data along.
QString portableDirectory()
{
    const QString program = programDirectory();
    return QFileInfo::exists(program + QLatin1StringView("/portable"))
               ? program + QLatin1StringView("/data")
               : QString();
}

Result<QString> ownFolderIn(const Result<QString> &parent)
{
    if (QString portable = portableDirectory(); !portable.isEmpty()) {
        return portable;
    }
    if (!parent) {
        return parent;
    }
    return *parent + QLatin1Char('/') + build::kProductName + QLatin1StringView(" Data");
}

} // namespace

QString programDirectory()
{
    return QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget()).path();
}

Result<QString> userDataFolder()
{
    return folderFromOrHome("XDG_DATA_HOME", QLatin1StringView(".local/share"));
}

Result<QString> commonDataFolder()
{
    return folderFromOrHome("XDG_STATE_HOME", QLatin1StringView(".local/state"));
}

Result<QString> dataDirectory()
{
    return ownFolderIn(userDataFolder());
}

Result<QString> commonDirectory()
{
    return ownFolderIn(commonDataFolder());
}

QString runtimeFolder()
{
    QString folder = folderFrom("XDG_RUNTIME_DIR");
    struct stat status = {};
    if (folder.isEmpty() || stat(QFile::encodeName(folder).constData(), &status) != 0 ||
        !S_ISDIR(status.st_mode) || status.st_uid != geteuid()) {
        return {};
    }
    return folder;
}

QString documentsFolder()
{
    if (QString folder = folderFrom("XDG_DOCUMENTS_DIR"); !folder.isEmpty()) {
        return folder;
    }
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return documents.isEmpty() ? QDir::homePath() : documents;
}

} // namespace tollivar::platform
