#pragma once

#include "tasks/task_manager.h"
#include "ui/main_window/total_progress.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <QObject>

#include <optional>

class QLabel;
class QTimer;

namespace tollivar::ui {

/// The line below the list that adds up what runs and waits, counted anew twice a second.
///
/// Threads: the main thread.
/// Owns:    its timer; label and manager are borrowed.
class TotalsLine final : public QObject {
    Q_OBJECT

public:
    TotalsLine(QLabel &label, const tasks::TaskManager &manager, TextLookup text);

    void refresh();
    /// Of the batch of downloads that is under way.
    void countCompleted() { m_total.countCompleted(); }
    /// Counts no more.
    void stop();

Q_SIGNALS:
    /// How far the batch is, from 0 to 1; nothing while no task runs or waits.
    void shareChanged(std::optional<double> share);

private:
    QLabel &m_label;
    const tasks::TaskManager &m_manager;
    TextLookup m_text;
    QTimer *m_timer;
    TotalProgress m_total;
    std::optional<double> m_share;
};

} // namespace tollivar::ui
