#include "tests/tasks/manager_fixture.h"

#include "tests/support/wait_until.h"

namespace tollivar::tasks {

ManagerTest::ManagerTest()
{
    auto database = TaskDatabase::open(
        m_sandbox.file(QStringLiteral("dtasks.db")), m_sandbox.file(QStringLiteral("dtasks.ini")),
        [](const QString &message) { ADD_FAILURE() << qPrintable(message); });
    EXPECT_TRUE(database);
    m_database = std::move(*database);
    m_inbox = std::make_unique<platform::AppMessageInbox>([this](const auto &message) {
        const EventOutcome outcome = m_manager->onTaskEvent(message.first, message.second);
        m_outcomes.push_back(outcome);
        if (outcome == EventOutcome::FollowUp) {
            m_recorder->record(message.first, message.second);
        }
        if (endsRun(eventCodeOf(message.first))) {
            m_endedTasks.push_back(taskIdOf(message.first));
        }
    });
}

void ManagerTest::begin(const TaskManagerOptions &options)
{
    m_recorder.reset();
    m_manager = std::make_unique<TaskManager>(
        *m_database,
        [this] {
            auto worker = std::make_shared<test::ScriptedWorker>();
            m_made.push_back(worker);
            return worker;
        },
        m_inbox->port(), options);
    m_recorder = std::make_unique<TaskRecorder>(*m_manager, *m_database, m_clock);
    m_manager->setFilter(TaskFilter::All);
}

std::uint32_t ManagerTest::add(const QString &address)
{
    TaskInfo task;
    task.strOriURL = address;
    task.strOutputFolder = m_sandbox.path() + QLatin1Char('/');
    task.strOutputName = QStringLiteral("clip");
    return m_manager->addTask(task, TaskOrigin::New);
}

std::uint32_t ManagerTest::addCompleted()
{
    TaskInfo task;
    task.nCompletedStatus = 1;
    task.bFileCreated = 1;
    return m_manager->addTask(task, TaskOrigin::New);
}

StartOutcome ManagerTest::start(std::uint32_t id, Placement placement)
{
    return m_manager->startTask(m_manager->rowOf(id), placement);
}

StopOutcome ManagerTest::stop(std::uint32_t id)
{
    return m_manager->stopTask(m_manager->rowOf(id));
}

void ManagerTest::end(std::uint32_t id, TaskEventCode code)
{
    const std::size_t before = m_endedTasks.size();
    worker(id).endWith(code);
    waitForEnds(before + 1);
}

void ManagerTest::waitForEnds(std::size_t count)
{
    test::waitUntil("the end of a run", [this, count] { return m_endedTasks.size() >= count; });
}

TaskState ManagerTest::state(std::uint32_t id) const
{
    return m_manager->worker(id)->state();
}

test::ScriptedWorker &ManagerTest::worker(std::uint32_t id) const
{
    return dynamic_cast<test::ScriptedWorker &>(*m_manager->worker(id));
}

std::vector<std::uint32_t> ManagerTest::shown() const
{
    std::vector<std::uint32_t> ids;
    for (int row = 0; row < m_manager->visibleCount(); ++row) {
        ids.push_back(m_manager->workerAt(row)->taskId());
        EXPECT_EQ(m_manager->rowOf(ids.back()), row);
    }
    return ids;
}

std::vector<StoredTask> ManagerTest::stored() const
{
    const auto tasks = readStoredTasks(m_sandbox.file(QStringLiteral("dtasks.db")));
    EXPECT_TRUE(tasks);
    return *tasks;
}

} // namespace tollivar::tasks
