#pragma once

#include <cstdint>
#include <optional>
#include <vector>

class QItemSelectionModel;

namespace tollivar::tasks {
class TaskManager;
}

namespace tollivar::ui {

/// Which tasks are selected, and which one the keys act from, by their ids: so both stay with
/// their tasks when rows are sorted, removed or filtered.
///
/// Threads: the main thread.
/// Owns:    nothing; selection and manager are borrowed by each call.
/// States:  read() after each change of the selection while rows and tasks agree; apply() when
///          they agree again.
class KeptSelection {
public:
    void read(const QItemSelectionModel &selection, const tasks::TaskManager *manager);
    /// Takes time with the selected tasks only.
    void apply(QItemSelectionModel &selection, const tasks::TaskManager *manager) const;
    void clear();

private:
    std::vector<std::uint32_t> m_selected;
    std::optional<std::uint32_t> m_current;
};

/// The selected rows in rising order.
[[nodiscard]] std::vector<int> selectedRowsOf(const QItemSelectionModel &selection);

/// Selects exactly these rows, which are in rising order.
void selectRowsOf(QItemSelectionModel &selection, const std::vector<int> &rows);

} // namespace tollivar::ui
