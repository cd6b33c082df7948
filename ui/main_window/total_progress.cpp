#include "ui/main_window/total_progress.h"

namespace tollivar::ui {

std::optional<double> TotalProgress::update(int running, int waiting, double reached)
{
    if (running + waiting == 0) {
        m_completed = 0;
        return std::nullopt;
    }
    return (m_completed + reached) / (m_completed + running + waiting);
}

} // namespace tollivar::ui
