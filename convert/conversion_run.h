#pragma once

#include "platform/auto_reset_event.h"
#include "tasks/api/task_info.h"

#include <QString>

#include <functional>

namespace tollivar::convert {

/// How a conversion ended.
enum class ConversionEnd : int { Stopped = 9, Ended = 10 };

struct ConversionResult {
    ConversionEnd end = ConversionEnd::Ended;
    bool isGood = false; ///< the output is there and can be read
    QString lastLine{};  ///< what the converter said last
};

/// The length of a media file as the converter tells it, such as "00:03:25"; false without one.
/// Blocks until the converter has read the file's head; `stop` ends that within milliseconds.
[[nodiscard]] bool ProbeDuration(const QString &path, platform::AutoResetEvent &stop,
                                 QString &duration);

/// Converts the record's file by the record's options, whole.
///
/// Threads: a thread of its own; `onPercent` is called there.
/// Errors:  told in the result; no half file stays.
[[nodiscard]] ConversionResult RunConversion(tasks::TaskInfo task, platform::AutoResetEvent &stop,
                                             const std::function<void(int percent)> &onPercent);

} // namespace tollivar::convert
