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

    /// Takes the widget over; one that was there before is let go of and hidden.
    void AttachHostWindow(QWidget &window);

private:
    QPointer<QWidget> m_hosted;
};

} // namespace tollivar::DuiLib
