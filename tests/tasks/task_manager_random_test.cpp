#include "tests/support/wait_until.h"
#include "tests/tasks/manager_fixture.h"

#include <algorithm>
#include <random>
#include <set>

namespace tollivar::tasks {
namespace {

using Ids = std::vector<std::uint32_t>;

constexpr int kSteps = 10'000;
constexpr int kFewestTasks = 10;
constexpr int kMostTasks = 50;

bool hasRun(TaskState state)
{
    return isRunning(state) || state == TaskState::Stopping ||
           state == TaskState::StoppingToRestart;
}

/// A person and a network that do anything at any moment. After each of it the manager's numbers
/// are held against what can be counted from outside, and in the end the database against memory.
class ManagerUnderRandomCommands : public ManagerTest {
protected:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }

    std::uint32_t anyTask()
    {
        const Ids ids = m_manager->allTasks();
        return ids.at(static_cast<std::size_t>(below(static_cast<int>(ids.size()))));
    }

    void addOne()
    {
        TaskInfo task;
        task.strOriURL = QStringLiteral("http://site/%1").arg(m_added);
        task.strOutputName = QStringLiteral("clip %1").arg(m_added++);
        task.strFileType = QStringLiteral(".SWF");
        task.nModeLow = 6;
        task.nCompletedStatus = below(4) == 0 ? 1 : 0;
        m_manager->addTask(task, TaskOrigin::New);
        ++m_expected;
    }

    void removeSome(int count)
    {
        std::set<int> rows;
        for (int i = 0; i < count; ++i) {
            rows.insert(below(m_manager->visibleCount() + 1)); // The last one is not there.
        }
        for (const int row : rows) {
            const TaskWorker *const leaving = m_manager->workerAt(row);
            m_expected -= leaving != nullptr ? 1 : 0;
            if (leaving != nullptr && hasRun(leaving->state())) {
                m_removedRuns.insert(leaving->taskId());
                m_mayStayStored.insert(leaving->record().strOriURL);
            }
        }
        m_manager->removeTasks({rows.begin(), rows.end()}, FileOnRemoval::Delete);
    }

    void endRunOf(std::uint32_t id)
    {
        constexpr std::array kEnds = {TaskEventCode::Completed, TaskEventCode::Completed,
                                      TaskEventCode::DownloadFailed, TaskEventCode::ParseFailed};
        if (isRunning(state(id))) {
            worker(id).endWith(kEnds.at(static_cast<std::size_t>(below(kEnds.size()))));
        }
    }

    void startOrRestart(std::uint32_t id)
    {
        const bool movesToEnd = state(id) == TaskState::Completed && below(2) == 0;
        start(id, movesToEnd ? Placement::MoveToEnd : Placement::Keep);
    }

    void changeAnOption()
    {
        switch (below(4)) {
        case 0:
            m_maximum = 1 + below(4);
            m_manager->setMaximumDownloads(m_maximum);
            break;
        case 1:
            m_manager->setRetryPolicy({.maximumRetries = below(3)});
            break;
        case 2:
            m_manager->setFilter(static_cast<TaskFilter>(1 + below(3)));
            break;
        default:
            m_manager->sort(static_cast<SortColumn>(below(6)),
                            static_cast<SortDirection>(below(3)));
            break;
        }
    }

    void doAnything()
    {
        const int choice = below(100);
        if (m_expected < kFewestTasks || (choice < 6 && m_expected < kMostTasks)) {
            addOne();
        } else if (choice < 10) {
            removeSome(1 + below(3));
        } else if (choice < 20) {
            changeAnOption();
        } else if (choice < 30) {
            stop(anyTask());
        } else if (choice < 60) {
            startOrRestart(anyTask());
        } else {
            endRunOf(anyTask());
        }
        m_inbox->drain();
        for (; m_endsSeen < m_endedTasks.size(); ++m_endsSeen) {
            m_removedRuns.erase(m_endedTasks[m_endsSeen]);
        }
    }

    /// Slots that stay free although somebody waits; a raised maximum starts only one at once.
    int unusedSlots() const
    {
        return std::clamp(m_maximum - m_manager->runningCount(), 0, m_manager->waitingCount());
    }

    void checkTotals()
    {
        const Ids ids = m_manager->allTasks();
        const auto inState = [this, &ids](auto isCounted) {
            return static_cast<int>(
                std::ranges::count_if(ids, [&](auto id) { return isCounted(state(id)); }));
        };
        const auto is = [](TaskState wanted) {
            return [=](TaskState one) { return one == wanted; };
        };
        const int completed = inState(is(TaskState::Completed));
        ASSERT_EQ(std::ssize(ids), m_expected);
        ASSERT_TRUE(std::ranges::is_sorted(ids, std::less_equal{})) << "two tasks with one id";
        ASSERT_EQ(m_manager->completedCount(), completed);
        ASSERT_EQ(m_manager->unfinishedCount(), m_expected - completed);
        ASSERT_EQ(m_manager->waitingCount(), inState(is(TaskState::Waiting)));
        ASSERT_EQ(m_manager->runningCount(), inState(hasRun) + std::ssize(m_removedRuns));
        ASSERT_EQ(inState(is(TaskState::Removed)), 0);
        if (m_manager->waitingCount() > 0) {
            ASSERT_GT(m_manager->runningCount(), 0) << "nobody will ever wake those that wait";
        }
    }

    void checkRows()
    {
        Ids rows = shown(); // Checks that rows and positions agree.
        std::ranges::sort(rows);
        ASSERT_EQ(std::ranges::adjacent_find(rows), rows.end()) << "a task in two rows";
        for (const std::uint32_t id : m_manager->allTasks()) {
            ASSERT_EQ(std::ranges::binary_search(rows, id), m_manager->rowOf(id) >= 0);
            ASSERT_EQ(worker(id).taskId(), id);
        }
    }

    void checkDatabase()
    {
        std::map<RowId, TaskInfo> rows;
        for (StoredTask &one : stored()) {
            ASSERT_TRUE(rows.emplace(one.row, std::move(one.task)).second);
        }
        for (const std::uint32_t id : m_manager->allTasks()) {
            const auto row = rows.extract(m_manager->storedRowOf(id));
            ASSERT_FALSE(row.empty()) << "task " << id << " is not stored";
            const TaskInfo record = worker(id).record();
            EXPECT_EQ(row.mapped().strOriURL, record.strOriURL);
            EXPECT_EQ(row.mapped().strOutputName, record.strOutputName);
            EXPECT_EQ(row.mapped().nModeLow, record.nModeLow);
            // A run that completed after a stop was asked is stopped, whatever its record says.
            EXPECT_EQ(row.mapped().nCompletedStatus != 0, state(id) == TaskState::Completed);
        }
        for (const auto &[row, task] : rows) {
            EXPECT_TRUE(m_mayStayStored.contains(task.strOriURL)) << "a removed task is stored";
        }
    }

    std::mt19937 m_random;
    int m_added = 0;
    int m_expected = 0;
    int m_maximum = 3;
    std::size_t m_endsSeen = 0;
    /// Removed tasks whose run has yet to end.
    std::set<std::uint32_t> m_removedRuns;
    /// Addresses of tasks that were removed while they ran: they keep their stored row.
    std::set<QString> m_mayStayStored;
};

// Would catch a slot that is lost or given twice, a count that drifts, a row that does not match, a
// task that vanishes, waits for ever or comes back.
TEST_F(ManagerUnderRandomCommands, keepsItsTotalsItsRowsAndItsDatabase)
{
    constexpr unsigned kSeed = 20'261'121;
    SCOPED_TRACE(testing::Message() << "seed " << kSeed);
    m_random.seed(kSeed);
    begin({.maximumDownloads = m_maximum, .retry = {.maximumRetries = 1, .switchesMode = true}});
    for (int step = 0; step < kSteps; ++step) {
        const int maximum = m_maximum;
        const int running = m_manager->runningCount();
        const int unused = unusedSlots();
        doAnything();
        ASSERT_LE(m_manager->runningCount(), std::max(running, m_maximum)) << "step " << step;
        if (m_maximum <= maximum) {
            ASSERT_LE(unusedSlots(), unused) << "step " << step;
        }
        ASSERT_NO_FATAL_FAILURE(checkTotals()) << "step " << step;
        ASSERT_NO_FATAL_FAILURE(checkRows()) << "step " << step;
    }
    m_manager->setFilter(TaskFilter::Downloading);
    m_manager->setFilter(TaskFilter::All);
    EXPECT_EQ(shown(), m_manager->allTasks());
    for (const std::uint32_t id : m_manager->allTasks()) {
        stop(id);
    }
    test::waitUntil("all runs to end", [this] { return m_manager->runningCount() == 0; });
    checkDatabase();
}

} // namespace
} // namespace tollivar::tasks
