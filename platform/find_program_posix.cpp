#include "platform/find_program.h"
#include "platform/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tollivar::platform {

namespace {

std::optional<QString> executableAt(const QString &path)
{
    const QFileInfo file(path);
    if (file.isFile() && file.isExecutable()) {
        return file.absoluteFilePath();
    }
    return std::nullopt;
}

std::optional<QString> findPlain(const QString &name)
{
    if (QDir::isAbsolutePath(name)) {
        return executableAt(name);
    }
    for (const QString &folder : {programDirectory(), QDir::currentPath()}) {
        if (auto found = executableAt(folder + QLatin1Char('/') + name)) {
            return found;
        }
    }
    if (name.contains(u'/')) {
        return std::nullopt;
    }
    const QString onPath = QStandardPaths::findExecutable(name);
    return onPath.isEmpty() ? std::nullopt : std::optional(onPath);
}

} // namespace

std::optional<QString> findProgram(const QString &name)
{
    if (name.isEmpty() || name.contains(QChar::Null)) {
        return std::nullopt;
    }
    QString path = name;
    path.replace(u'\\', u'/');
    const QString ending = QStringLiteral(".exe");
    if (path.endsWith(ending, Qt::CaseInsensitive)) {
        if (auto found = findPlain(path.chopped(ending.size()))) {
            return found;
        }
    }
    return findPlain(path);
}

} // namespace tollivar::platform
