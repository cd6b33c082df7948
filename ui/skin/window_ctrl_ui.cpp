#include "ui/skin/window_ctrl_ui.h"

#include <QVBoxLayout>

namespace tollivar::DuiLib {

namespace {

bool isReachable(const QWidget &widget)
{
    return widget.focusPolicy() != Qt::NoFocus;
}

/// The nearest control before `widget` on the keyboard's way; null when it is the first.
QWidget *controlBefore(const QWidget &widget)
{
    const QWidget *window = widget.window();
    QWidget *before = widget.previousInFocusChain();
    while (before != window && before != &widget && !isReachable(*before)) {
        before = before->previousInFocusChain();
    }
    return isReachable(*before) ? before : nullptr;
}

} // namespace

CWindowCtrlUI::CWindowCtrlUI(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void CWindowCtrlUI::AttachHostWindow(QWidget &window)
{
    if (m_hosted != nullptr) {
        layout()->removeWidget(m_hosted);
        m_hosted->hide();
    }
    m_hosted = &window;
    layout()->addWidget(&window);
    takeTurn(window);
    window.show();
}

void CWindowCtrlUI::takeTurn(QWidget &window) const
{
    // What comes late would be the keyboard's last stop, wherever it stands.
    QWidget *before = controlBefore(*this);
    QList<QWidget *> stops = window.findChildren<QWidget *>();
    stops.prepend(&window);
    for (QWidget *stop : stops) {
        if (before != nullptr && isReachable(*stop)) {
            setTabOrder(before, stop);
            before = stop;
        }
    }
}

} // namespace tollivar::DuiLib
