#include "ui/skin/skin_source.h"

#include "ui/skin/skin_archive.h"
#include "ui/skin/skin_document.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QTemporaryDir>

namespace tollivar::DuiLib {

using platform::ErrorKind;
using platform::Result;

namespace {

const QString &builtInRoot()
{
    static const QString root = QStringLiteral(":/skins/default");
    return root;
}

constexpr int kMaximumImageSide = 4'096;                // pixels
constexpr qint64 kMaximumImageFile = 4LL * 1024 * 1024; // bytes
constexpr qint64 kMaximumDrawing = 256LL * 1024;        // bytes

Result<void> refusal(const QString &file, const QString &reason)
{
    return platform::failure(ErrorKind::AskUser, file + QStringLiteral(": ") + reason);
}

Result<void> checkDrawing(const QString &path)
{
    QFile file(path);
    if (file.size() > kMaximumDrawing || !file.open(QIODevice::ReadOnly)) {
        return refusal(path, QStringLiteral("is too large for a drawing"));
    }
    // A few nested copies, or declared texts, multiply into a drawing that never ends.
    const QByteArray text = file.readAll();
    for (const char *word : {"<use", "<!ENTITY", "<image", "<filter"}) {
        if (text.contains(word)) {
            return refusal(path, QStringLiteral("uses %1, which drawings of a skin may not")
                                     .arg(QString::fromLatin1(word)));
        }
    }
    return {};
}

Result<void> checkImage(const QString &path)
{
    const QFileInfo info(path);
    const QString ending = info.suffix().toLower();
    if (ending == QStringLiteral("svg")) {
        return checkDrawing(path);
    }
    static const QStringList kinds{QStringLiteral("png"),  QStringLiteral("jpg"),
                                   QStringLiteral("jpeg"), QStringLiteral("gif"),
                                   QStringLiteral("bmp"),  QStringLiteral("ico")};
    if (!kinds.contains(ending)) {
        return {};
    }
    // Reads the header alone.
    const QSize size = QImageReader(path).size();
    if (info.size() > kMaximumImageFile || size.width() > kMaximumImageSide ||
        size.height() > kMaximumImageSide) {
        return refusal(path, QStringLiteral("is too large for an image"));
    }
    return {};
}

Result<void> checkImages(const QString &root)
{
    int count = 0;
    QDirIterator files(root, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        if (++count > kMaximumSkinFiles) {
            return refusal(root, QStringLiteral("holds too many files"));
        }
        if (auto checked = checkImage(files.next()); !checked) {
            return checked;
        }
    }
    return {};
}

} // namespace

SkinSource SkinSource::builtIn()
{
    return SkinSource(builtInRoot());
}

Result<SkinSource> SkinSource::folder(const QString &path)
{
    const QString root = QFileInfo(path).canonicalFilePath();
    if (root.isEmpty() || !QFileInfo(root).isDir()) {
        return platform::failure(ErrorKind::AskUser, QStringLiteral("%1 is not there").arg(path));
    }
    if (const auto checked = checkImages(root); !checked) {
        return tl::unexpected(checked.error());
    }
    return SkinSource(root);
}

Result<SkinSource> SkinSource::archive(const QString &path)
{
    auto unpacked = std::make_shared<QTemporaryDir>();
    if (!unpacked->isValid()) {
        return platform::failure(ErrorKind::AskUser, unpacked->errorString());
    }
    if (const auto done = unpackSkin(path, unpacked->path()); !done) {
        return tl::unexpected(done.error());
    }
    auto source = folder(unpacked->path());
    if (source) {
        source->m_unpacked = std::move(unpacked);
    }
    return source;
}

QString SkinSource::pathInside(const QString &name) const
{
    const QString path = QDir::cleanPath(m_root + u'/' + name);
    if (m_root == builtInRoot()) {
        return path.startsWith(m_root + u'/') && QFile::exists(path) ? path : QString();
    }
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.startsWith(m_root + u'/') ? real : QString();
}

Result<QByteArray> SkinSource::read(const QString &name) const
{
    QFile file(pathInside(name));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return platform::failure(ErrorKind::AskUser,
                                 QStringLiteral("%1 is not in the skin").arg(name));
    }
    QByteArray bytes = file.read(kMaximumSkinFile + 1);
    if (bytes.size() > kMaximumSkinFile) {
        return platform::failure(ErrorKind::AskUser, QStringLiteral("%1 is too large").arg(name));
    }
    return bytes;
}

QString SkinSource::imagePath(const QString &name) const
{
    return pathInside(name);
}

} // namespace tollivar::DuiLib
