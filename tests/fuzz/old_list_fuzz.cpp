// The list of older releases: text of the file in, records and their insert statements out.

#include "platform/ini_file.h"
#include "tasks/internal/task_statements.h"
#include "tasks/legacy_import.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace tollivar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(
        QByteArrayView(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const int count =
        platform::iniNumber(platform::iniSection(text, u"GENERAL").value(u"taskcount"_s));
    const QHash<QString, QString> lines = platform::iniSection(text, u"TASKINFO");
    for (const tasks::TaskInfo &task : tasks::parseOldTasks(count, lines)) {
        // All quotes of a statement come in pairs: no text can end its own literal.
        if (tasks::insertStatement(task).count(u'\'') % 2 != 0) {
            std::abort();
        }
    }
    return 0;
}
