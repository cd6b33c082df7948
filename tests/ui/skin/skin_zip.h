#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace tollivar::test {

enum class ZipKind { File, Link };

struct ZipEntry {
    QByteArray name;
    QByteArray content; ///< of a link: where it leads
    ZipKind kind = ZipKind::File;
};

/// Writes a zip archive, however bad its names are.
void writeZip(const QString &path, const std::vector<ZipEntry> &entries);

} // namespace tollivar::test
