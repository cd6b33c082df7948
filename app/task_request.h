#pragma once

#include "platform/result.h"
#include "tasks/api/download_mode.h"
#include "tasks/api/task_info.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tollivar::app {

/// What a person asks for when adding a task, before it is checked.
struct TaskRequest {
    QString address{};
    QString folder{}; ///< absolute, with or without a trailing separator
    QString name{};   ///< empty: named after the page's title
    tasks::DownloadMethod method = tasks::DownloadMethod::Video;
    int quality = 0;   ///< 0 to 6, for watch pages of the video-sharing site
    QString profile{}; ///< what the file is converted to; empty: it stays as it is

    bool operator==(const TaskRequest &) const = default;
};

/// The address with a scheme in front, "http://" when it had none.
/// Errors: AskUser when it is empty or has a scheme that is not fetched; only http, https and
/// the rtmp kinds are.
[[nodiscard]] platform::Result<QString> checkedAddress(const QString &address);

/// The record of a new task; makes the folder when it is missing. A direct address gives name and
/// type by its last part; its type stays empty when the address has none. The address of a stream
/// is always direct.
/// Errors: AskUser when address, folder, name or profile cannot be used.
[[nodiscard]] platform::Result<tasks::TaskInfo> newTask(const TaskRequest &request);

/// Requests as one text for the running program, and back.
/// Errors: AskUser when the text is not such a list; every field is checked again by newTask().
[[nodiscard]] QByteArray encodeTaskRequests(const std::vector<TaskRequest> &requests);
[[nodiscard]] platform::Result<std::vector<TaskRequest>> decodeTaskRequests(const QByteArray &text);

} // namespace tollivar::app
