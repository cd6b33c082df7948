#pragma once

#include "app/cli/cli_arguments.h"
#include "app/cli/task_report.h"

#include <QStringList>

#include <map>
#include <memory>

namespace tollivar::app {

/// Where the reports of a session go.
///
/// Threads: the main thread.
class TaskView {
public:
    virtual ~TaskView() = default;
    virtual void show(const TaskReport &report) = 0;
};

/// One JSON object a line on standard output, for scripts.
class JsonTaskView final : public TaskView {
public:
    void show(const TaskReport &report) override;
};

/// The path of each finished file on standard output, failures as sentences on standard error, and
/// there, when a person sees it, one line for each running task that is drawn anew with each
/// report.
class TextTaskView final : public TaskView {
public:
    TextTaskView();
    ~TextTaskView() override;
    TextTaskView(const TextTaskView &) = delete;
    TextTaskView &operator=(const TextTaskView &) = delete;

    void show(const TaskReport &report) override;

private:
    void clearLines();
    void drawLines();

    bool m_isTerminal = false;
    int m_drawnLines = 0;
    std::map<tasks::RowId, QString> m_lines;
};

/// The view for what a person or a script asked for.
[[nodiscard]] std::unique_ptr<TaskView> makeView(CliOutput output);

} // namespace tollivar::app
