#pragma once

#include "ui/dialog/hit_test.h"
#include "ui/skin/dialog_builder.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/skin_event.h"

#include <QDialog>
#include <QRect>
#include <QRegion>
#include <QString>

#include <optional>
#include <span>

namespace tollivar::ui {

class WindowFrame;

/// A window whose whole face comes from a skin file: it has no frame, is dragged by its caption
/// band, resized by its edges and clipped to round corners. Neither Enter nor Escape closes it, only
/// what its code does on the skin's events.
///
/// A derived class lists its controls, calls createFace() in its constructor and handles events in
/// Notify().
///
/// Threads: the main thread.
/// Owns:    the paint manager and, through it, the controls.
class CUILibDialog : public QDialog, public DuiLib::INotifyUI {
    Q_OBJECT

public:
    ~CUILibDialog() override;
    CUILibDialog(const CUILibDialog &) = delete;
    CUILibDialog &operator=(const CUILibDialog &) = delete;

    /// What a place of the window does when it is dragged.
    [[nodiscard]] HitArea hitTestAt(QPoint position) const;

protected:
    explicit CUILibDialog(QWidget *owner, Qt::WindowFlags kind = Qt::Dialog);

    /// Builds the face from a skin file and sends "windowinit".
    void createFace(const QString &skinFile, std::span<const DuiLib::RequiredControl> required);
    /// A control that was required with a fitting element.
    template<typename Control>
    [[nodiscard]] Control &control(QLatin1StringView name) const
    {
        return *qobject_cast<Control *>(m_manager.FindControl(QString(name)));
    }
    /// Puts a widget into a skin's placeholder; false when the skin has none of that name.
    bool bindNativeChild(const QString &placeholder, QWidget &child);
    [[nodiscard]] const DuiLib::CPaintManagerUI &paintManager() const { return m_manager; }

    /// Shows no more of the window than this part of it, which may be empty.
    void showOnly(const QRect &part);
    /// To be called before a visible window changes its size by itself: makes sure that it stays
    /// where it is.
    void learnPlace();
    /// From now on the window is no smaller than this, nor than its controls need, whatever texts
    /// they come to show.
    void setLeastSize(QSize least);

    /// Fills the work area of the screen it is on, or comes back from it.
    void toggleMaximised();

    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void clip();
    /// Square corners fill the screen, round ones stand free.
    void restyleCorners();
    void applyLeastSize();
    [[nodiscard]] bool holds(const QObject &object) const;
    /// Over the middle of its owner, all of it on the screen; later the person's own place counts.
    void placeOverOwner();
    void fillWorkArea();

    DuiLib::CPaintManagerUI m_manager;
    std::optional<QRect> m_shownPart;
    WindowFrame *m_frame = nullptr;
    QSize m_leastSize;
    bool m_isPlaced = false;
};

} // namespace tollivar::ui
