#include "platform/command_line_text.h"

#include <cstdint>
#include <cstdlib>

using tollivar::platform::joinCommandLine;
using tollivar::platform::splitCommandLine;

/// Splits any text, joins the arguments and splits again: the arguments are the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString line =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QStringList arguments = splitCommandLine(line);
    if (arguments.isEmpty()) {
        return 0;
    }
    // A quote in a program's name cannot be written; splitting never gives one.
    if (arguments.front().contains(u'"') ||
        splitCommandLine(joinCommandLine(arguments)) != arguments) {
        std::abort();
    }
    return 0;
}
