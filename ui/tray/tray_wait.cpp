#include "ui/tray/tray_wait.h"

#include <algorithm>
#include <utility>

namespace tollivar::ui {

TrayWait::TrayWait(std::function<bool()> isThere, std::chrono::milliseconds patience)
    : m_isThere(std::move(isThere))
    , m_end(std::chrono::steady_clock::now() + patience)
{
    constexpr std::chrono::milliseconds kBetweenLooks{250};
    m_timer.setInterval(std::min(kBetweenLooks, patience));
    connect(&m_timer, &QTimer::timeout, this, &TrayWait::look);
    if (!m_isThere()) {
        m_timer.start();
    }
}

void TrayWait::look()
{
    const bool isThere = m_isThere();
    if (!isThere && std::chrono::steady_clock::now() < m_end) {
        return;
    }
    m_timer.stop();
    if (!isThere) {
        Q_EMIT givenUp();
    }
}

} // namespace tollivar::ui
