#pragma once

#include "tests/support/sandbox.h"
#include "tests/support/scripted_worker.h"
#include "tests/ui/task_list/list_texts.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <gtest/gtest.h>

#include <memory>

namespace tollivar::ui {

/// A list on a manager with a real database; no run ever starts, states are set by the tests.
class ListTest : public ::testing::Test {
protected:
    ListTest();
    ~ListTest() override;

    /// Adds a task called "clip <number>", which is shown.
    tasks::TaskWorker &add();
    tasks::TaskWorker &add(const tasks::TaskInfo &record);
    void addMany(int count);
    /// Shows the list, `size` in all, with the keyboard focus.
    void show(const QSize &size = {560, 400});
    /// The ids of the selected tasks.
    [[nodiscard]] std::vector<std::uint32_t> selectedIds() const;

    test::Sandbox m_sandbox;
    std::unique_ptr<tasks::TaskDatabase> m_database;
    std::unique_ptr<tasks::TaskManager> m_manager;
    std::unique_ptr<CListCtrlEx> m_list;
};

} // namespace tollivar::ui
