#include "tests/ui/task_list/list_fixture.h"

#include <QApplication>
#include <QTest>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

ListTest::ListTest()
{
    auto database = tasks::TaskDatabase::open(
        m_sandbox.file(u"dtasks.db"_s), m_sandbox.file(u"dtasks.ini"_s),
        [](const QString &message) { ADD_FAILURE() << message.toStdString(); });
    EXPECT_TRUE(database);
    m_database = std::move(*database);
    m_manager = std::make_unique<tasks::TaskManager>(
        *m_database, [] { return std::make_shared<test::ScriptedWorker>(); },
        platform::AppMessagePort{}, tasks::TaskManagerOptions{});
    m_manager->setFilter(tasks::TaskFilter::All);
    m_list = std::make_unique<CListCtrlEx>(englishText);
    m_list->attach(m_manager.get());
    m_manager->onRowsChanged([this] { m_list->refreshRows(); });
}

ListTest::~ListTest()
{
    m_manager->onRowsChanged({});
}

tasks::TaskWorker &ListTest::add()
{
    tasks::TaskInfo record;
    record.strOutputFolder = u"/videos/"_s;
    record.strOutputName = u"clip %1"_s.arg(m_manager->visibleCount());
    return add(record);
}

tasks::TaskWorker &ListTest::add(const tasks::TaskInfo &record)
{
    return *m_manager->worker(m_manager->addTask(record, tasks::TaskOrigin::New));
}

void ListTest::addMany(int count)
{
    m_database->inTransaction([this, count] {
        for (int i = 0; i < count; ++i) {
            add();
        }
    });
}

void ListTest::show(const QSize &size)
{
    m_list->resize(size);
    m_list->show();
    QApplication::setActiveWindow(m_list.get());
    m_list->setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_list.get()));
}

std::vector<std::uint32_t> ListTest::selectedIds() const
{
    std::vector<std::uint32_t> ids;
    for (const int row : m_list->selectedRows()) {
        ids.push_back(m_manager->workerAt(row)->taskId());
    }
    return ids;
}

} // namespace tollivar::ui
