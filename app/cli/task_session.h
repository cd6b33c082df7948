#pragma once

#include "app/cli/task_view.h"
#include "app/conversions.h"
#include "app/engine.h"

#include <QEventLoop>

#include <cstdint>
#include <set>

namespace tollivar::app {

/// Runs tasks to their end, conversion included, and reports them to a view: what `download` and
/// `run` share.
///
/// Threads: the main thread, whose event loop wait() runs.
class TaskSession {
public:
    /// Both are borrowed and must outlive the session.
    TaskSession(Engine &engine, TaskView &view);
    /// What the engine still has to tell is no longer heard.
    ~TaskSession();
    TaskSession(const TaskSession &) = delete;
    TaskSession &operator=(const TaskSession &) = delete;

    /// Stores a new task and starts or queues it. False when it could not be stored: the database's
    /// notifier has told why.
    [[nodiscard]] bool add(const tasks::TaskInfo &task);
    /// Starts or queues a stored task.
    void start(std::uint32_t taskId);

    /// Returns when every task of the session has ended, with the exit status.
    [[nodiscard]] int wait();

private:
    void handleEvent(std::uint32_t taskId, tasks::TaskEventCode code);
    void reportEnd(std::uint32_t taskId);
    void stopAll();
    /// Converts a completed task's file if its record asks for that.
    void complete(std::uint32_t taskId);
    void followConversion(std::uint32_t taskId);
    void finish(std::uint32_t taskId);
    void report(ReportKind kind, std::uint32_t taskId, const QString &reason = {});
    [[nodiscard]] TaskReport reportOf(ReportKind kind, std::uint32_t taskId) const;

    Engine &m_engine;
    TaskView &m_view;
    Conversions m_conversions{[this](std::uint32_t taskId) { followConversion(taskId); }};
    std::set<std::uint32_t> m_unfinished;
    std::set<std::uint32_t> m_converting;
    QEventLoop m_loop;
    bool m_hasFailure = false;
    bool m_isInterrupted = false;
};

} // namespace tollivar::app
