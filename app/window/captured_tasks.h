#pragma once

#include "ui/main_window/captured_media.h"

#include <QString>

#include <vector>

namespace tollivar::app {

/// The media that one text of the capture browser describes, each as a task without folder and
/// name. What has no address that is fetched is left out.
[[nodiscard]] std::vector<ui::CapturedMedia> readCapturedMedia(const QString &text);

} // namespace tollivar::app
