#include "app/window/free_moment.h"
#include "tests/support/wait_until.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace tollivar::app {
namespace {

/// A note waits while somebody types into a dialog.
class FreeMomentTest : public ::testing::Test {
protected:
    QDialog &openDialog()
    {
        auto *dialog = new QDialog(&m_window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        auto *field = new QLineEdit(dialog);
        dialog->setModal(true);
        dialog->show();
        dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        field->setFocus();
        return *dialog;
    }
    void tell(const char *what)
    {
        m_moment.run([this, what] { m_told += what; });
    }
    void SetUp() override { m_window.show(); }

    QWidget m_window;
    FreeMoment m_moment;
    std::string m_told;
};

TEST_F(FreeMomentTest, isNowWhileNoDialogIsOpen)
{
    tell("a");
    EXPECT_EQ(m_told, "a");
}

TEST_F(FreeMomentTest, comesWhenTheLastDialogHasClosed)
{
    QDialog &first = openDialog();
    tell("a");
    tell("b");
    QDialog &second = openDialog();
    second.close();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_told, "");
    first.close();
    test::waitUntil("both", [this] { return m_told == "ab"; });
}

TEST_F(FreeMomentTest, isOverForTheNextWhenThisOneOpensADialog)
{
    QDialog &dialog = openDialog();
    QMessageBox note(&m_window);
    m_moment.run([&note] { note.open(); });
    tell("b");
    dialog.close();
    test::waitUntil("the note", [&] { return note.isVisible(); });
    QCoreApplication::processEvents();
    EXPECT_EQ(m_told, "");
    note.close();
    test::waitUntil("the second", [this] { return m_told == "b"; });
}

TEST_F(FreeMomentTest, whatStillWaitsIsForgottenAtTheEnd)
{
    QDialog &dialog = openDialog();
    {
        FreeMoment moment;
        moment.run([this] { m_told += "x"; });
    }
    dialog.close();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_told, "");
}

} // namespace
} // namespace tollivar::app
