#pragma once

#include "ui/skin/paint_manager.h"

#include <QMessageBox>

namespace tollivar::ui {

/// A note or question with the face of the skin's windows: their caption, frame and row of buttons.
/// Everything else is Qt's own box, whose keys, standard buttons and answers it keeps.
///
/// Threads: the main thread.
class MessageBox final : public QMessageBox {
    Q_OBJECT

public:
    MessageBox(Icon icon, const QString &title, const QString &text, StandardButtons buttons,
               QWidget *owner);

    /// Shows a box and waits for the answer.
    static StandardButton information(QWidget *owner, const QString &title, const QString &text,
                                      StandardButtons buttons = Ok);
    static StandardButton question(QWidget *owner, const QString &title, const QString &text,
                                   StandardButtons buttons = Yes | No);
    static StandardButton warning(QWidget *owner, const QString &title, const QString &text,
                                  StandardButtons buttons = Ok);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void makeFace();
    void arrange();

    DuiLib::CPaintManagerUI m_manager;
    QWidget *m_face = nullptr;    ///< behind everything: frame, caption and the buttons' band
    QWidget *m_caption = nullptr; ///< in the face
    QWidget *m_band = nullptr;    ///< in the face
};

} // namespace tollivar::ui
