#include "fetch/text/unique_file.h"

namespace tollivar::fetch {

using platform::ErrorKind;
using platform::exists;
using platform::Result;
using platform::WhenThere;
using platform::WritableFile;

namespace {

/// A path cut apart; the alternatives are always made from the parts of the path as it was given.
struct PathParts {
    QString folder; ///< with its trailing separator
    QString baseName;
    QString extension; ///< with its dot
};

PathParts splitPath(const QString &path, const QString &type = {})
{
    const qsizetype nameBegin = path.lastIndexOf(u'/') + 1;
    const qsizetype dot =
        !type.isEmpty() && path.endsWith(type) ? path.size() - type.size() : path.lastIndexOf(u'.');
    const qsizetype nameEnd = dot < nameBegin ? path.size() : dot;
    return {path.left(nameBegin), path.mid(nameBegin, nameEnd - nameBegin), path.mid(nameEnd)};
}

QString numbered(const QString &baseName, int counter)
{
    return baseName + QLatin1Char('(') + QString::number(counter) + QLatin1Char(')');
}

platform::Error noNameLeft(const QString &path)
{
    return {ErrorKind::AskUser, QStringLiteral("no file can be created beside \"%1\"").arg(path),
            0};
}

} // namespace

Result<UniqueFile> createUniqueFile(const QString &path, FileReuse reuse, const QString &type)
{
    const PathParts parts = splitPath(path, type);
    QString candidate = path;
    QString baseName = parts.baseName;
    for (int counter = 0; counter < kMaximumNameTries; ++counter) {
        // Only the name that the task used before is its own; an alternative may be anybody's.
        const bool isOwn = reuse == FileReuse::Yes && candidate == path;
        if (isOwn || !exists(candidate)) {
            auto file =
                WritableFile::create(candidate, isOwn ? WhenThere::Truncate : WhenThere::Refuse);
            if (file) {
                return UniqueFile{std::move(*file), candidate, baseName};
            }
        }
        baseName = numbered(parts.baseName, counter);
        candidate = parts.folder + baseName + parts.extension;
    }
    return tl::unexpected(noNameLeft(path));
}

Result<QString> freePath(const QString &path, TakePath take)
{
    const PathParts parts = splitPath(path);
    QString candidate = path;
    for (int counter = 0; counter < kMaximumNameTries; ++counter) {
        const bool isFree =
            !exists(candidate) &&
            (take == TakePath::No || WritableFile::create(candidate, WhenThere::Refuse));
        if (isFree) {
            return candidate;
        }
        candidate = parts.folder + numbered(parts.baseName, counter) + parts.extension;
    }
    return tl::unexpected(noNameLeft(path));
}

} // namespace tollivar::fetch
