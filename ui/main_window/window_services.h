#pragma once

#include "platform/result.h"
#include "settings/options_manager.h"
#include "settings/settings_store.h"
#include "tasks/task_manager.h"
#include "ui/dialogs/window_texts.h"
#include "ui/main_window/captured_media.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <functional>
#include <vector>

namespace tollivar::ui {

/// What the program around the main window does for it. Everything is borrowed and must outlive the
/// window.
struct WindowServices {
    tasks::TaskManager &manager;
    settings::SettingsStore &settings;
    settings::COptionsManager &options;
    WindowTexts texts;
    /// The record of a task that the person did not describe any further, its folder made.
    std::function<platform::Result<tasks::TaskInfo>(const QString &address)> taskForAddress;
    /// The media that one text of the capture browser describes.
    std::function<std::vector<CapturedMedia>(const QString &text)> readCapturedText;
    /// What a finished task's conversion adds to its row.
    std::function<CListCtrlEx::Conversion(std::uint32_t taskId)> conversionOf;
    std::function<void(std::uint32_t taskId)> stopConversion;
    /// Whether an old flash player is to be pointed out.
    std::function<bool()> wantsFlashNote;
};

} // namespace tollivar::ui
