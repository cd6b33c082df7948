#pragma once

#include <QLatin1StringView>
#include <QString>

#include <span>

class QWidget;

namespace tollivar::DuiLib {

class CPaintManagerUI;

/// How an option may be drawn; look="radio" makes it another widget.
enum class OptionLook { NoRadio, Any };

/// A control that a window's code works with: a skin file without it cannot be used.
struct RequiredControl {
    QLatin1StringView type; ///< the element, such as "Button"
    QLatin1StringView name;
    OptionLook look = OptionLook::NoRadio;
};

/// Builds a window's tree of controls from its skin file. docs/skins.md lists elements and
/// attributes; unknown ones are told as problems, with file and line, and left out.
///
/// Threads: the main thread.
class CDialogBuilder {
public:
    /// Attaches the tree to the manager and returns its root, a child of `window`. A file that is
    /// broken, or from which a required control is not built, is told as a problem, and the
    /// program's own is taken.
    static QWidget &Create(const QString &fileName, std::span<const RequiredControl> required,
                           QWidget &window, CPaintManagerUI &manager);
};

} // namespace tollivar::DuiLib
