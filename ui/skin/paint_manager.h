#pragma once

#include "ui/skin/skin_event.h"
#include "ui/skin/skin_problem.h"

#include <QMargins>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QWidget>

#include <vector>

namespace tollivar::DuiLib {

class SkinSource;

/// What the root element of a skin file says about its window. Lengths are in logical pixels.
struct WindowLook {
    QSize size{400, 300};
    QSize smallest{0, 0};
    QSize largest{0, 0};
    QMargins sizeBox{}; ///< how far from each edge the window can be resized
    QMargins caption{}; ///< left and right inset of the caption band, its top and its bottom
    QSize roundCorner{0, 0};
};

/// The skin of one window: its tree of controls, found by name or place, and who is told about
/// their events. The skin itself, shared by all windows, is set once at the start.
///
/// Threads: the main thread.
/// Owns:    nothing but the window's tree, through its widgets; the window and the notifiers are
///          borrowed, and a notifier must outlive the manager.
class CPaintManagerUI {
public:
    /// Prepares the skin that is part of the program, and the look that all skins build upon.
    static void SetInstance();
    /// Takes the skin from an archive, or from a folder. One that cannot be used leaves the
    /// program's own in place and is told in problems().
    static void SetResourceZip(const QString &archive);
    static void SetResourcePath(const QString &folder);
    /// The files to look in, in order: the chosen skin, then the program's own.
    [[nodiscard]] static const std::vector<SkinSource> &sources();
    /// An image of the skin, or of the program's own; empty when neither has it.
    [[nodiscard]] static QString imagePath(const QString &name);
    /// What was found wrong with the skin so far; each is told once.
    [[nodiscard]] static std::vector<SkinProblem> takeProblems();
    static void addProblem(SkinProblem problem);

    void Init(QWidget &window) { m_window = &window; }
    void AttachDialog(QWidget &root, const WindowLook &look);
    void AddNotifier(INotifyUI &notifier);
    /// Tells the notifiers.
    void SendNotify(const SkinEvent &event) const;

    /// Null when there is none.
    [[nodiscard]] QWidget *FindControl(const QString &name) const;
    /// The innermost control of the skin at a place of the window.
    [[nodiscard]] QWidget *FindControl(QPoint position) const;
    /// The class name of a control, such as "ButtonUI"; empty for a widget that is none.
    [[nodiscard]] static QString GetClass(const QWidget &control);

    [[nodiscard]] QMargins GetSizeBox() const { return m_look.sizeBox; }
    [[nodiscard]] QMargins GetCaptionRect() const { return m_look.caption; }
    [[nodiscard]] QSize GetRoundCorner() const { return m_look.roundCorner; }
    [[nodiscard]] QSize GetInitSize() const { return m_look.size; }
    [[nodiscard]] QSize GetMinInfo() const { return m_look.smallest; }
    [[nodiscard]] QSize GetMaxInfo() const { return m_look.largest; }

private:
    QWidget *m_window = nullptr;
    QWidget *m_root = nullptr;
    WindowLook m_look;
    std::vector<INotifyUI *> m_notifiers;
};

} // namespace tollivar::DuiLib
