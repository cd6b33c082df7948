#pragma once

#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QTemporaryDir;

namespace tollivar::DuiLib {

/// Where the files of one skin come from: a folder, an archive, or the program itself.
///
/// Every name is relative to the skin and cannot lead out of it, not even by a link. Images are
/// looked at once, when the skin is opened: one that would need an absurd amount of memory, or a
/// drawing that is made of copies of itself, makes the whole skin unusable.
///
/// Threads: the main thread.
/// Owns:    what an archive was unpacked into, until the last copy is gone.
class SkinSource {
public:
    /// The skin that is part of the program; it is always whole.
    [[nodiscard]] static SkinSource builtIn();
    /// Errors: AskUser when the folder is not there or an image is dangerous.
    [[nodiscard]] static platform::Result<SkinSource> folder(const QString &path);
    /// Errors: as unpackSkin() and folder().
    [[nodiscard]] static platform::Result<SkinSource> archive(const QString &path);

    /// Errors: AskUser when the file is missing, too large, or not inside the skin.
    [[nodiscard]] platform::Result<QByteArray> read(const QString &name) const;
    /// The path of an image; empty when it is not inside the skin.
    [[nodiscard]] QString imagePath(const QString &name) const;
    /// The folder that "skin:" stands for in style sheets.
    [[nodiscard]] QString root() const { return m_root; }

private:
    explicit SkinSource(QString root) : m_root(std::move(root)) {}
    [[nodiscard]] QString pathInside(const QString &name) const;

    QString m_root;
    std::shared_ptr<QTemporaryDir> m_unpacked;
};

} // namespace tollivar::DuiLib
