#pragma once

namespace tollivar::ui {

/// When the drop zone is on the screen: while the person wants it there, and as the minimised form
/// of the main window if that is wanted.
class ZonePresence {
public:
    struct Options {
        bool isWanted = false;        ///< whatever the main window does
        bool standsForWindow = false; ///< while the main window is minimised
    };

    /// What the person has set; takes the place of what was toggled.
    void setOptions(const Options &options) { m_options = options; }
    void setWindowMinimised(bool isMinimised);
    /// Shows it, or hides it: one that stands for the window until that is minimised again.
    void toggle();
    [[nodiscard]] bool isShown() const;

private:
    [[nodiscard]] bool standsForWindow() const;

    Options m_options;
    bool m_isMinimised = false;
    bool m_isDismissed = false;
};

} // namespace tollivar::ui
