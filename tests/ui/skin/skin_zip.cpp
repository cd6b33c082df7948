#include "tests/ui/skin/skin_zip.h"

#include <QFile>

#include <gtest/gtest.h>
#include <zip.h>

namespace tollivar::test {

void writeZip(const QString &path, const std::vector<ZipEntry> &entries)
{
    int code = 0;
    zip_t *archive =
        zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    ASSERT_NE(archive, nullptr);
    for (const ZipEntry &entry : entries) {
        zip_source_t *source = zip_source_buffer(
            archive, entry.content.constData(), static_cast<zip_uint64_t>(entry.content.size()), 0);
        const zip_int64_t index =
            zip_file_add(archive, entry.name.constData(), source, ZIP_FL_ENC_UTF_8);
        ASSERT_GE(index, 0);
        if (entry.kind == ZipKind::Link) {
            constexpr zip_uint32_t kLinkMode = 0120777U << 16U;
            zip_file_set_external_attributes(archive, static_cast<zip_uint64_t>(index), 0,
                                             ZIP_OPSYS_UNIX, kLinkMode);
        }
    }
    ASSERT_EQ(zip_close(archive), 0);
}

} // namespace tollivar::test
