#pragma once

#include "platform/result.h"
#include "tasks/task_database.h"
#include "tasks/task_manager.h"
#include "tasks/task_recorder.h"

#include <QString>

#include <functional>
#include <memory>

namespace tollivar::app {

/// What the task engine needs to know from settings and directories.
struct EngineOptions {
    QString databasePath;
    QString legacyListPath;
    tasks::TaskManagerOptions manager;
    /// Tells the person what went wrong with the stored tasks.
    tasks::Notifier notifier;
};

/// Everything below a front end, joined: stored tasks, manager, workers, recorder.
///
/// Threads: made, used and destroyed on the main thread, which runs an event loop.
/// Owns:    the database and every task; the destructor stops what runs and waits for it.
class Engine {
public:
    /// Called after each task event, when the manager has seen it and it is recorded.
    using EventHandler = std::function<void(std::uint32_t taskId, tasks::TaskEventCode code)>;

    /// Opens the database and loads every stored task.
    /// Errors: as TaskDatabase::open().
    [[nodiscard]] static platform::Result<std::unique_ptr<Engine>> create(EngineOptions options);

    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    [[nodiscard]] tasks::TaskManager &manager();
    void onEvent(EventHandler handler);

private:
    struct Private;
    explicit Engine(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::app
