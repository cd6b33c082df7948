#include "fetch/page_resolver.h"
#include "fetch/parser_answer.h"

#include <cstdint>
#include <cstdlib>

/// No answer of a companion hurts, and no type from it leaves the folder.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const auto &record : tollivar::fetch::readAnswer(text)) {
        tollivar::tasks::TaskInfo task;
        tollivar::fetch::applyAnswer(record, task);
        if (task.strFileType.contains(u'/') || task.strFileType.contains(u'\n')) {
            std::abort();
        }
    }
    return 0;
}
