#pragma once

#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QMessageBox>
#include <QToolButton>

#include <gtest/gtest.h>

#include <vector>

namespace tollivar::ui {

/// The main window over scripted tasks, used by its controls.
class TollivarDlgTest : public ::testing::Test {
protected:
    CTollivarDlg &open()
    {
        CTollivarDlg &window = m_world.open();
        m_list = window.findChild<CListCtrlEx *>();
        return window;
    }

    void click(const QString &name) { test::click(*test::control(m_world.window(), name)); }
    QString caption(const QString &name)
    {
        return test::control<QToolButton>(m_world.window(), name)->text();
    }
    tasks::TaskState state(std::uint32_t id) { return m_world.manager().worker(id)->state(); }

    /// Answers the next question box.
    static void answer(QMessageBox::StandardButton button)
    {
        test::whenModalOpens(
            [button](QWidget &box) { qobject_cast<QMessageBox *>(&box)->button(button)->click(); });
    }
    /// Presses a button of the next dialog.
    static void pressInDialog(const QString &button)
    {
        test::whenModalOpens(
            [button](QWidget &dialog) { test::click(*test::control(dialog, button)); });
    }
    /// One medium of a page stands in the next captured text.
    void setCaptured(const QString &title)
    {
        CapturedMedia media;
        media.task.strOriURL = QStringLiteral("http://site.example/page");
        media.title = title;
        m_world.captured = {media};
    }
    std::vector<QString> names()
    {
        std::vector<QString> shown;
        for (int row = 0; row < m_world.manager().visibleCount(); ++row) {
            shown.push_back(m_world.manager().workerAt(row)->record().strOutputName);
        }
        return shown;
    }

    test::WindowWorld m_world;
    CListCtrlEx *m_list = nullptr;
};

} // namespace tollivar::ui
