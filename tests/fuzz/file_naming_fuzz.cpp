#include "fetch/text/file_naming.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a page is called, its file stays in its folder and fits the file system.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace tollivar::fetch;
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString name = cleanName(text, u' ');
    const QString type = harmlessFileType(text);
    const QString file = fittingName(name, type) + QStringLiteral("(9999)") + type;
    const bool isSafe = !name.isEmpty() && name.size() <= 80 && !file.contains(u'/') &&
                        !file.contains(QChar::Null) && file.toUtf8().size() <= kMaximumNameBytes;
    if (!isSafe) {
        std::abort();
    }
    return 0;
}
