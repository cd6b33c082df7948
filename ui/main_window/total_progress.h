#pragma once

#include <optional>

namespace tollivar::ui {

/// How far a batch of downloads is: the tasks that run or wait, and those that were completed since
/// nothing did either. Each counts the same, as sizes are not known before a task runs; one that is
/// stopped, fails or is removed counts no more.
class TotalProgress {
public:
    void countCompleted() { ++m_completed; }
    /// From 0 to 1; nothing while no task runs or waits, which ends the batch. `reached` is what the
    /// running tasks have reached, each from 0 to 1, added up.
    [[nodiscard]] std::optional<double> update(int running, int waiting, double reached);

private:
    int m_completed = 0;
};

} // namespace tollivar::ui
