#include "app/engine.h"

#include "fetch/fetch_worker.h"

namespace tollivar::app {

using platform::AppMessage;
using platform::Result;

struct Engine::Private {
    std::unique_ptr<tasks::TaskDatabase> database;
    std::unique_ptr<platform::AppMessageInbox> inbox;
    std::unique_ptr<tasks::TaskManager> manager;
    std::unique_ptr<tasks::TaskRecorder> recorder;
    EventHandler handler;

    void take(const AppMessage &message)
    {
        const auto outcome = manager->onTaskEvent(message.first, message.second);
        if (outcome == tasks::EventOutcome::FollowUp) {
            recorder->record(message.first, message.second);
        }
        if (handler) {
            handler(tasks::taskIdOf(message.first), tasks::eventCodeOf(message.first));
        }
    }

    void loadTasks()
    {
        database->LoadTasks([this](tasks::RowId row, tasks::TaskInfo &&task) {
            manager->addTask(task, tasks::TaskOrigin::Stored, row);
        });
        manager->setFilter(tasks::TaskFilter::All);
    }
};

Result<std::unique_ptr<Engine>> Engine::create(EngineOptions options)
{
    auto database = tasks::TaskDatabase::open(options.databasePath, options.legacyListPath,
                                              std::move(options.notifier));
    if (!database) {
        return tl::unexpected(database.error());
    }
    auto d = std::make_unique<Private>();
    d->database = std::move(*database);
    d->inbox = std::make_unique<platform::AppMessageInbox>(
        [data = d.get()](const AppMessage &message) { data->take(message); });
    d->manager = std::make_unique<tasks::TaskManager>(
        *d->database, [] { return std::make_shared<fetch::FetchWorker>(); }, d->inbox->port(),
        options.manager);
    d->recorder =
        std::make_unique<tasks::TaskRecorder>(*d->manager, *d->database, platform::systemClock());
    d->loadTasks();
    return std::unique_ptr<Engine>(new Engine(std::move(d)));
}

Engine::Engine(std::unique_ptr<Private> data) : d(std::move(data)) {}

Engine::~Engine()
{
    // Workers end first; what they still posted is dropped with the inbox.
    d->manager->shutDown();
}

tasks::TaskManager &Engine::manager()
{
    return *d->manager;
}

void Engine::onEvent(EventHandler handler)
{
    d->handler = std::move(handler);
}

} // namespace tollivar::app
