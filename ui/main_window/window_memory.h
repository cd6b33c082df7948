#pragma once

#include "settings/settings_store.h"
#include "ui/task_list/list_columns.h"

#include <QObject>
#include <QRect>
#include <QTimer>

#include <array>
#include <optional>

namespace tollivar::ui {

class CListCtrlEx;

/// What the main window keeps for the next start: its place and size, whether it fills the screen,
/// and the widths of the list's columns once a person has dragged one.
///
/// Threads: the main thread.
/// Owns:    nothing; window, list and settings must outlive it.
class WindowMemory final : public QObject {
    Q_OBJECT

public:
    /// Gives the window and the list what is stored, as far as it can be used, and stores what
    /// changes from then on, at the latest when the window is hidden.
    WindowMemory(QWidget &window, CListCtrlEx &list, const settings::SettingsStore &settings);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void restore();
    void maximiseOnce();
    void store();

    QWidget &m_window;
    CListCtrlEx &m_list;
    const settings::SettingsStore &m_settings;
    QTimer m_rest;                ///< runs while there is something to store
    std::optional<QRect> m_place; ///< the last one while it did not fill the screen
    bool m_isToBeMaximised = false;
};

/// Where a window stood, from "x,y,width,height"; nothing for any other text.
[[nodiscard]] std::optional<QRect> storedPlace(const QString &text);
/// The widths of all columns, from "40,180,…"; nothing for any other text, and for widths that no
/// list has.
[[nodiscard]] std::optional<std::array<int, kListColumnCount>> storedWidths(const QString &text);

} // namespace tollivar::ui
