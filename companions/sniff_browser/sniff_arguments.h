#pragma once

#include "platform/result.h"

#include <QString>
#include <QStringList>

namespace tollivar::sniff {

/// Where chosen media go beside standard output.
enum class Recipient {
    RunningProgram, ///< which offers each as a task
    Reader,         ///< nowhere: whoever gave a parse mode reads the output
};

struct SniffArguments {
    QString address; ///< http or https; empty: an empty window
    Recipient recipient = Recipient::RunningProgram;
};

/// Reads `-parsemode MODE -url ADDRESS`, each of which may be missing. `arguments` begin behind the
/// program's name.
/// Errors: AskUser when the address is none of the web, or an argument is unknown or has no value.
[[nodiscard]] platform::Result<SniffArguments> readSniffArguments(const QStringList &arguments);

} // namespace tollivar::sniff
