#pragma once

#include "platform/result.h"

#include <QString>
#include <QStringList>

namespace tollivar::transvert {

/// What a caller asks for, in the converter's old language.
struct ConverterRequest {
    QString input{};
    QString output{};      ///< empty: only tell about the input
    QStringList options{}; ///< names and values, as they came
};

/// Reads the arguments behind the program's name; the name once more in front is passed over.
/// Errors: AskUser for an unknown option, a missing value, a missing input.
[[nodiscard]] platform::Result<ConverterRequest> readArguments(const QStringList &arguments);

/// The arguments for ffmpeg, which writes to `target`. What this ffmpeg cannot do is brought to the
/// nearest that it can, and a line about each such change goes into `notes`.
[[nodiscard]] QStringList ffmpegArguments(const ConverterRequest &request, const QString &target,
                                          QStringList &notes);

} // namespace tollivar::transvert
