#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

/// The window whose option tells whether it makes room once an address was taken.
class MinimiseOption : public TollivarDlgTest {
protected:
    CTollivarDlg &openWithOption(bool isOn)
    {
        m_world.settings().setFlag(settings::keys::kMinimizeDragTask, isOn);
        return open();
    }

    /// Lets an address go over the window and presses that button of the dialog.
    void drop(const QString &button)
    {
        m_isAnswered = false;
        test::whenModalOpens([this, button](QWidget &dialog) {
            EXPECT_FALSE(m_world.window().isMinimized()) << "not before the answer";
            test::click(*test::control(dialog, button));
            m_isAnswered = true;
        });
        QMimeData data;
        data.setText(u"http://site.example/dropped"_s);
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&m_world.window(), &enter);
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&m_world.window(), &event);
        waitForTheEnd();
    }
    /// A text of the capture browser, and the same.
    void capture(const QString &button)
    {
        m_isAnswered = false;
        setCaptured(u"concert"_s);
        test::whenModalOpens([this, button](QWidget &dialog) {
            EXPECT_FALSE(m_world.window().isMinimized()) << "not before the answer";
            test::click(*test::control(dialog, button));
            m_isAnswered = true;
        });
        m_world.window().intake().addCapturedText(u"whatever"_s);
        waitForTheEnd();
    }

private:
    void waitForTheEnd() const
    {
        // The window does the rest once the dialog's loop has returned to it.
        test::waitUntil("the dialog's end", [this] {
            return m_isAnswered && QApplication::activeModalWidget() == nullptr;
        });
    }

    bool m_isAnswered = false;
};

TEST_F(MinimiseOption, minimisesAfterADroppedAddressWasAccepted)
{
    const CTollivarDlg &window = openWithOption(true);
    drop(u"btnDownload"_s);
    EXPECT_TRUE(window.isMinimized());
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
}

TEST_F(MinimiseOption, minimisesAfterACapturedMediumWasAccepted)
{
    const CTollivarDlg &window = openWithOption(true);
    capture(u"btnDownload"_s);
    EXPECT_TRUE(window.isMinimized());
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
}

TEST_F(MinimiseOption, comesBackToAskAboutTheNextMediumOfAText)
{
    CTollivarDlg &window = openWithOption(true);
    setCaptured(u"one"_s);
    m_world.captured.push_back(m_world.captured.front());
    int asked = 0;
    const auto accept = [&](QWidget &dialog) {
        EXPECT_FALSE(window.isMinimized());
        ++asked;
        test::click(*test::control(dialog, u"btnDownload"_s));
    };
    test::whenModalOpens([&](QWidget &dialog) {
        accept(dialog);
        test::whenModalOpens(accept);
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("both tasks", [this] { return m_world.manager().visibleCount() == 2; });
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(window.isMinimized());
}

TEST_F(MinimiseOption, aFolderThatCannotBeMadeIsToldByTheWindowAndNotByAnIcon)
{
    CTollivarDlg &window = openWithOption(true);
    // No folder can be made where a file of that name stands.
    m_world.sandbox().write(u"concert"_s, "x");
    setCaptured(u"concert"_s);
    bool isTold = false;
    test::whenModalOpens([&](QWidget &dialog) {
        test::click(*test::control(dialog, u"btnDownload"_s));
        test::whenModalOpens([&](QWidget &warning) {
            EXPECT_FALSE(window.isMinimized());
            isTold = true;
            warning.close();
        });
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("the end of all",
                    [&isTold] { return isTold && QApplication::activeModalWidget() == nullptr; });
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(MinimiseOption, staysWhenTheAddressOrTheMediumWasNotWanted)
{
    const CTollivarDlg &window = openWithOption(true);
    drop(u"btnCancel"_s);
    EXPECT_FALSE(window.isMinimized());
    capture(u"btnClose"_s);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(MinimiseOption, staysWithTheOptionOff)
{
    const CTollivarDlg &window = openWithOption(false);
    drop(u"btnDownload"_s);
    EXPECT_FALSE(window.isMinimized());
    capture(u"btnDownload"_s);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_EQ(m_world.manager().visibleCount(), 2);
}

TEST_F(MinimiseOption, staysWhenTheAddressWasTypedByHand)
{
    const CTollivarDlg &window = openWithOption(true);
    test::whenModalOpens([](QWidget &dialog) {
        test::type(*test::control(dialog, u"editURL"_s), u"http://site.example/typed"_s);
        test::click(*test::control(dialog, u"btnDownload"_s));
    });
    click(u"btnAddUrl"_s);
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
    EXPECT_FALSE(window.isMinimized());
}

TEST_F(MinimiseOption, theNextDroppedAddressBringsTheWindowBackToAsk)
{
    const CTollivarDlg &window = openWithOption(true);
    drop(u"btnDownload"_s);
    drop(u"btnCancel"_s);
    EXPECT_FALSE(window.isMinimized());
}

} // namespace tollivar::ui
