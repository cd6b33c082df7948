#include "ui/skin/skin_archive.h"

#include <QDir>
#include <QFile>

#include <zip.h>

#include <array>
#include <memory>

namespace tollivar::DuiLib {

using platform::ErrorKind;
using platform::Result;

namespace {

struct CloseArchive {
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t *entry) const { zip_fclose(entry); }
};

/// The upper half of the attributes of an entry made on a Unix system is its file mode.
constexpr zip_uint32_t kUnixModeShift = 16;
constexpr zip_uint32_t kFileKindMask = 0170000;
constexpr zip_uint32_t kSymbolicLink = 0120000;

bool isLink(zip_t *archive, zip_uint64_t index)
{
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    return zip_file_get_external_attributes(archive, index, 0, &system, &attributes) == 0 &&
           system == ZIP_OPSYS_UNIX &&
           ((attributes >> kUnixModeShift) & kFileKindMask) == kSymbolicLink;
}

bool staysInside(const QString &name)
{
    if (name.isEmpty() || name.contains(u'\\') || name.contains(u':') ||
        name.contains(QChar::Null) || QDir::isAbsolutePath(name)) {
        return false;
    }
    const QString plain = QDir::cleanPath(name);
    return plain != QStringLiteral("..") && !plain.startsWith(QStringLiteral("../"));
}

Result<void> refusal(const QString &name, const QString &reason)
{
    return platform::failure(ErrorKind::AskUser, name + QStringLiteral(": ") + reason);
}

/// Counts what really comes out: the size that an archive states may be a lie.
Result<qint64> unpackEntry(zip_t *archive, zip_uint64_t index, const QString &name,
                           const QString &target)
{
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(archive, index, 0));
    QFile file(target);
    if (!entry || !QDir().mkpath(QFileInfo(target).path()) || !file.open(QIODevice::WriteOnly)) {
        return tl::unexpected(refusal(name, QStringLiteral("cannot be unpacked")).error());
    }
    std::array<char, 65'536> buffer{};
    qint64 total = 0;
    for (;;) {
        const zip_int64_t count = zip_fread(entry.get(), buffer.data(), buffer.size());
        if (count == 0) {
            return total;
        }
        if (count < 0 || file.write(buffer.data(), count) != count) {
            return tl::unexpected(refusal(name, QStringLiteral("cannot be unpacked")).error());
        }
        total += count;
        if (total > kMaximumUnpackedFile) {
            return tl::unexpected(refusal(name, QStringLiteral("is too large")).error());
        }
    }
}

} // namespace

Result<void> unpackSkin(const QString &archive, const QString &folder)
{
    int code = 0;
    const std::unique_ptr<zip_t, CloseArchive> zip(
        zip_open(QFile::encodeName(archive).constData(), ZIP_RDONLY, &code));
    if (!zip) {
        return refusal(archive, QStringLiteral("is not a zip archive"));
    }
    const zip_int64_t count = zip_get_num_entries(zip.get(), 0);
    if (count > kMaximumSkinFiles) {
        return refusal(archive, QStringLiteral("holds too many files"));
    }
    qint64 total = 0;
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(count); ++index) {
        const QString name = QString::fromUtf8(zip_get_name(zip.get(), index, ZIP_FL_ENC_GUESS));
        if (!staysInside(name) || isLink(zip.get(), index)) {
            return refusal(name, QStringLiteral("leads out of the skin"));
        }
        if (name.endsWith(u'/')) {
            continue;
        }
        const auto size = unpackEntry(zip.get(), index, name, folder + u'/' + name);
        if (!size) {
            return tl::unexpected(size.error());
        }
        total += *size;
        if (total > kMaximumUnpackedSkin) {
            return refusal(archive, QStringLiteral("is too large"));
        }
    }
    return {};
}

} // namespace tollivar::DuiLib
