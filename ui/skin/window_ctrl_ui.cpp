#include "ui/skin/window_ctrl_ui.h"

#include <QVBoxLayout>

namespace tollivar::DuiLib {

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
    window.show();
}

} // namespace tollivar::DuiLib
