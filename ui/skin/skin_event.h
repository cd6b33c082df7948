#pragma once

#include <QLatin1StringView>
#include <QString>

class QWidget;

namespace tollivar::DuiLib {

/// What happened to a control of a skin.
namespace events {
inline constexpr QLatin1StringView kWindowInit{"windowinit"};   ///< the window is laid out
inline constexpr QLatin1StringView kClick{"click"};             ///< a button
inline constexpr QLatin1StringView kItemSelect{"itemselect"};   ///< the person chose from a list
inline constexpr QLatin1StringView kTextChanged{"textchanged"}; ///< an edit field
inline constexpr QLatin1StringView kSelectChanged{"selectchanged"}; ///< an option or check box
inline constexpr QLatin1StringView kSwitch{"switch"}; ///< a tab layout shows another page
inline constexpr QLatin1StringView kLink{"link"};     ///< a link inside a text
} // namespace events

struct SkinEvent {
    QLatin1StringView type; ///< one of events
    QString name;           ///< of the control; empty for the window itself
    QWidget *sender = nullptr;
};

/// Takes the events of one skinned window.
///
/// Threads: the main thread.
class INotifyUI {
public:
    INotifyUI() = default;
    virtual ~INotifyUI() = default;
    INotifyUI(const INotifyUI &) = delete;
    INotifyUI &operator=(const INotifyUI &) = delete;

    virtual void Notify(const SkinEvent &event) = 0;
};

} // namespace tollivar::DuiLib
