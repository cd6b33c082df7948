#include "platform/file_ops.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

QString systemText(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

} // namespace

bool exists(const QString &path)
{
    if (path.contains(QChar::Null)) {
        return false;
    }
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) == 0) {
        return true;
    }
    return errno != ENOENT && errno != ENOTDIR;
}

Result<void> makeFolders(const QString &path)
{
    if (!path.startsWith(u'/') || path.contains(QChar::Null)) {
        return failure(ErrorKind::AskUser, QStringLiteral("the path is not absolute"));
    }
    qsizetype end = 0;
    do {
        end = path.indexOf(u'/', end + 1);
        const QByteArray level = QFile::encodeName(end < 0 ? path : path.left(end));
        if (mkdir(level.constData(), 0777) == 0) {
            continue;
        }
        const int code = errno;
        struct stat status = {};
        const bool isFolder = stat(level.constData(), &status) == 0 && S_ISDIR(status.st_mode);
        if (!isFolder) {
            return failure(ErrorKind::AskUser, systemText(code == EEXIST ? ENOTDIR : code), code);
        }
    } while (end >= 0);
    return {};
}

Result<void> replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
        !file.commit()) {
        return failure(ErrorKind::AskUser, file.errorString());
    }
    return {};
}

Result<std::unique_ptr<WritableFile>> WritableFile::create(const QString &path, WhenThere whenThere)
{
    if (path.contains(QChar::Null)) {
        return failure(ErrorKind::AskUser, QStringLiteral("the path names nothing"));
    }
    const int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW |
                      (whenThere == WhenThere::Refuse ? O_EXCL : O_TRUNC);
    const int handle = ::open(QFile::encodeName(path).constData(), flags, 0666);
    if (handle < 0) {
        const int code = errno;
        return failure(code == EEXIST ? ErrorKind::TryAgain : ErrorKind::AskUser, systemText(code),
                       code);
    }
    return std::unique_ptr<WritableFile>(new WritableFile(handle));
}

WritableFile::WritableFile(int handle) : m_handle(handle) {}

WritableFile::~WritableFile()
{
    close(m_handle);
}

Result<void> WritableFile::write(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(m_handle, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            const int code = errno;
            return failure(ErrorKind::AskUser, systemText(code), code);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

} // namespace tollivar::platform
