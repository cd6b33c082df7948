#pragma once

#include <QPointer>
#include <QWidget>

namespace tollivar::DuiLib {

/// A place in a skin that a widget of the program's own fills.
///
/// Threads: the main thread.
class CWindowCtrlUI final : public QWidget {
    Q_OBJECT

public:
    explicit CWindowCtrlUI(QWidget *parent = nullptr);

    /// Takes the widget over, also on the keyboard's way through the window; one that was there
    /// before is let go of and hidden.
    void AttachHostWindow(QWidget &window);

private:
    void takeTurn(QWidget &window) const;

    QPointer<QWidget> m_hosted;
};

} // namespace tollivar::DuiLib
