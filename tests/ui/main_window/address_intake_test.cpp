#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

TEST_F(TollivarDlgTest, aPendingAddressBecomesATaskWithoutADialog)
{
    CTollivarDlg &window = open();
    window.intake().addAddress(u"http://a/12345678"_s);
    test::waitUntil("the task", [this] { return m_world.manager().visibleCount() == 1; });
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(names().front(), u"12345678"_s);
    EXPECT_TRUE(tasks::isRunning(m_world.manager().workerAt(0)->state()));
    EXPECT_EQ(caption(u"btnDownloading"_s), u"Downloading (1)"_s);
}

TEST_F(TollivarDlgTest, addressesThatComeTogetherAllBecomeTasks)
{
    CTollivarDlg &window = open();
    window.intake().addAddress(u"http://a/1"_s);
    window.intake().addAddress({});
    window.intake().addAddress(u"http://a/2"_s);
    test::waitUntil("both", [this] { return m_world.manager().visibleCount() == 2; });
    EXPECT_EQ(m_world.manager().workerAt(0)->record().strOriURL, u"http://a/1"_s);
    EXPECT_EQ(m_world.manager().workerAt(1)->record().strOriURL, u"http://a/2"_s);
}

TEST_F(TollivarDlgTest, anEmptyPendingAddressAddsNothing)
{
    CTollivarDlg &window = open();
    window.intake().addAddress({});
    window.intake().addAddress(u"http://a/b"_s);
    test::waitUntil("the second", [this] { return m_world.manager().visibleCount() > 0; });
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
}

TEST_F(TollivarDlgTest, aCapturedMediumIsOfferedAndKeptInItsOwnFolder)
{
    CTollivarDlg &window = open();
    tasks::TaskInfo media;
    media.strOriURL = u"http://site.example/page"_s;
    media.strDownloadUrl = u"http://cdn.example/x.mp4"_s;
    media.strFileType = u".mp4"_s;
    media.nModeLow = 6;
    media.strCookies = u"k=v"_s;
    m_world.captured = {{media, u"Evening: concert"_s}};
    test::whenModalOpens([](QWidget &dialog) {
        EXPECT_EQ(test::control<QLineEdit>(dialog, u"editURL"_s)->text(),
                  u"http://site.example/page"_s);
        test::click(*test::control(dialog, u"btnDownload"_s));
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("the task", [this] { return m_world.manager().visibleCount() == 1; });
    const auto task = m_world.manager().workerAt(0)->record();
    EXPECT_EQ(task.strOutputFolder, m_world.sandbox().path() + u"/Evening- concert/"_s);
    EXPECT_TRUE(QDir(task.strOutputFolder).exists());
    EXPECT_EQ(task.strDownloadUrl, u"http://cdn.example/x.mp4"_s);
    EXPECT_EQ(task.strCookies, u"k=v"_s);
    EXPECT_EQ(task.nModeLow, 6);
    EXPECT_EQ(task.bAutoRename, 1);
    EXPECT_EQ(task.strFileType, u".mp4"_s);
}

TEST_F(TollivarDlgTest, aCancelledMediumIsSkippedAndTheNextIsOffered)
{
    CTollivarDlg &window = open();
    tasks::TaskInfo media;
    media.strDownloadUrl = u"http://cdn.example/x.mp4"_s;
    media.strOriURL = u"http://a/1"_s;
    m_world.captured = {{media, u"one"_s}, {media, u"two"_s}};
    bool second = false;
    test::whenModalOpens([&second](QWidget &dialog) {
        if (test::control<QLineEdit>(dialog, u"editFileName"_s)->text() == u"one"_s) {
            test::click(*test::control(dialog, u"btnCancel"_s));
        }
        test::whenModalOpens([&second](QWidget &next) {
            second = test::control<QLineEdit>(next, u"editFileName"_s)->text() == u"two"_s;
            test::click(*test::control(next, u"btnCancel"_s));
        });
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&second] { return second; });
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(TollivarDlgTest, anAddressThatALockedDialogCannotTakeIsOfferedAfterIt)
{
    CTollivarDlg &window = open();
    setCaptured(u"concert"_s);
    QString offered;
    test::whenModalOpens([&](QWidget &locked) {
        window.intake().offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
        EXPECT_EQ(test::control<QLineEdit>(locked, u"editURL"_s)->text(),
                  u"http://site.example/page"_s);
        test::click(*test::control(locked, u"btnCancel"_s));
        test::whenModalOpens([&offered](QWidget &next) {
            offered = test::control<QLineEdit>(next, u"editURL"_s)->text();
            test::click(*test::control(next, u"btnCancel"_s));
        });
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&offered] { return !offered.isEmpty(); });
    EXPECT_EQ(offered, u"http://second/"_s);
}

TEST_F(TollivarDlgTest, anAddressThatComesWhileACapturedMediumIsRefusedIsNotLost)
{
    CTollivarDlg &window = open();
    // No folder can be made where a file of that name stands.
    m_world.sandbox().write(u"concert"_s, "x");
    setCaptured(u"concert"_s);
    QString offered;
    test::whenModalOpens([&](QWidget &locked) {
        test::click(*test::control(locked, u"btnDownload"_s));
        test::whenModalOpens([&](QWidget &warning) {
            test::whenModalOpens([&offered](QWidget &next) {
                offered = test::control<QLineEdit>(next, u"editURL"_s)->text();
                test::click(*test::control(next, u"btnCancel"_s));
            });
            window.intake().offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
            warning.close();
        });
    });
    window.intake().addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&offered] { return !offered.isEmpty(); });
    EXPECT_EQ(offered, u"http://second/"_s);
    test::waitUntil("the end of all", [] { return QApplication::activeModalWidget() == nullptr; });
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(TollivarDlgTest, aCopiedAddressOfOurOwnIsNotOfferedBack)
{
    tasks::TaskInfo task;
    task.strOriURL = u"http://a/1"_s;
    m_world.add(task);
    CTollivarDlg &window = open();
    m_list->selectRows({0});
    window.runCommand(language::commands::kCopyWebAddress);
    window.intake().offerAddress(u"http://a/1"_s, AddressOrigin::Clipboard);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    bool opened = false;
    test::whenModalOpens([&opened](QWidget &dialog) {
        opened = true;
        test::click(*test::control(dialog, u"btnCancel"_s));
    });
    window.intake().offerAddress(u"http://a/1"_s, AddressOrigin::Dropped);
    EXPECT_TRUE(opened);
}

TEST_F(TollivarDlgTest, aSecondAddressGoesIntoTheDialogThatIsOpen)
{
    CTollivarDlg &window = open();
    test::whenModalOpens([&window](QWidget &dialog) {
        window.intake().offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
        EXPECT_EQ(test::control<QLineEdit>(dialog, u"editURL"_s)->text(), u"http://second/"_s);
        test::click(*test::control(dialog, u"btnCancel"_s));
    });
    window.intake().offerAddress(u"http://first/"_s, AddressOrigin::Dropped);
}

TEST_F(TollivarDlgTest, takesDroppedAddressesAndRefusesFiles)
{
    CTollivarDlg &window = open();
    const auto isTaken = [&window](const QMimeData &data) {
        QDragEnterEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    };
    QMimeData text;
    text.setText(u"http://a/"_s);
    EXPECT_TRUE(isTaken(text));
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/etc/hosts"_s)});
    file.setText(u"file:///etc/hosts"_s);
    EXPECT_FALSE(isTaken(file));
    EXPECT_FALSE(isTaken(QMimeData()));
}

TEST_F(TollivarDlgTest, aRecordThatWasChosenQuicklyBecomesATaskWithoutADialog)
{
    CTollivarDlg &window = open();
    CapturedMedia media;
    media.task.strOriURL = u"http://site.example/watch"_s;
    media.task.strDownloadUrl = u"http://media.example/clip.mp4"_s;
    media.task.strFileType = u".mp4"_s;
    media.title = u"Harbour"_s;
    m_world.captured = {media};
    m_world.settings().SetLastFolder(m_world.sandbox().path());
    window.intake().addCapturedRecord(u"the record"_s);
    ASSERT_EQ(m_world.manager().visibleCount(), 1);
    const tasks::TaskInfo &task = m_world.manager().workerAt(0)->record();
    EXPECT_EQ(task.strOutputName, u"Harbour"_s);
    EXPECT_EQ(task.strOutputFolder, m_world.sandbox().path() + u"/Harbour/"_s);
    EXPECT_EQ(task.strDownloadUrl, u"http://media.example/clip.mp4"_s);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(TollivarDlgTest, aChosenRecordWithoutATitleIsCalledByItsWatchPage)
{
    CTollivarDlg &window = open();
    CapturedMedia media;
    media.task.strOriURL = u"http://www.youtube.com/watch?v=harbour-1234"_s;
    media.task.strDownloadUrl = u"http://media.example/clip.mp4"_s;
    m_world.captured = {media};
    m_world.settings().SetLastFolder(m_world.sandbox().path());
    window.intake().addCapturedRecord(u"the record"_s);
    ASSERT_EQ(m_world.manager().visibleCount(), 1);
    EXPECT_EQ(m_world.manager().workerAt(0)->record().strOutputName, u"harbour-1234"_s);
}

TEST_F(TollivarDlgTest, theBrowserAsksUnlessShiftOrItsKeyIsPressed)
{
    CTollivarDlg &window = open();
    QSignalSpy wanted(&window, &CTollivarDlg::browserWanted);
    click(u"btnBrowser"_s);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    test::press(window, Qt::Key_B, Qt::ControlModifier);
    ASSERT_EQ(wanted.size(), 2);
    EXPECT_TRUE(wanted[0][0].toBool());
    EXPECT_FALSE(wanted[1][0].toBool());
}

} // namespace tollivar::ui
