#include "app/language/menu_tables.h"
#include "platform/build_config.h"
#include "tests/app/window/on_screen/program_fixture.h"
#include "tests/support/box_watch.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using tasks::TaskState;

/// What a person changes in the settings, at once and at the next start.
class ChangedSettings : public ProgramTest {
protected:
    static void choose(QWidget &dialog, const QString &list, const QString &item)
    {
        auto *control = test::control<QComboBox>(dialog, list);
        const int place = control->findText(item);
        ASSERT_GE(place, 0) << item.toStdString();
        control->setCurrentIndex(place);
        Q_EMIT control->activated(place);
    }
    static void click(QWidget &dialog, const QString &box)
    {
        test::control<QCheckBox>(dialog, box)->click();
    }
    /// What a list of the dialog shows.
    QString shownIn(const QString &list)
    {
        QString text;
        changeSettings(
            [&](QWidget &dialog) { text = test::control<QComboBox>(dialog, list)->currentText(); });
        return text;
    }
    QByteArray updateRequest() const
    {
        return "GET /update?ver=" + QString(platform::build::kVersion).toLatin1();
    }
};

TEST_F(ChangedSettings, aRaisedNumberOfDownloadsStartsAWaitingTaskAtOnce)
{
    m_settings->setNumber(settings::keys::kMaxSimDownloads, 1);
    start();
    for (const char *path : {"/a.mp4", "/b.mp4", "/c.mp4"}) {
        m_site.on(path, test::neverAnswer());
        add(path);
    }
    m_site.waitForRequests(1);
    EXPECT_EQ(manager().runningCount(), 1);
    EXPECT_EQ(manager().waitingCount(), 2);
    changeSettings([](QWidget &dialog) { choose(dialog, u"cbSimDownloads"_s, u"2"_s); });
    m_site.waitForRequests(2);
    EXPECT_EQ(manager().runningCount(), 2);
    end();
    start();
    EXPECT_EQ(shownIn(u"cbSimDownloads"_s), u"2"_s);
}

TEST_F(ChangedSettings, aLoweredNumberOfDownloadsLetsRunningTasksRun)
{
    m_settings->setNumber(settings::keys::kMaxSimDownloads, 2);
    start();
    for (const char *path : {"/a.mp4", "/b.mp4"}) {
        m_site.on(path, test::neverAnswer());
        add(path);
    }
    m_site.waitForRequests(2);
    changeSettings([](QWidget &dialog) { choose(dialog, u"cbSimDownloads"_s, u"1"_s); });
    add("/c.mp4");
    EXPECT_EQ(manager().runningCount(), 2);
    EXPECT_EQ(manager().waitingCount(), 1);
}

TEST_F(ChangedSettings, aNumberOfDownloadsThatIsNoneIsKeptAndStillRunsOne)
{
    for (const int number : {0, -5}) {
        m_settings->setNumber(settings::keys::kMaxSimDownloads, number);
        start();
        EXPECT_EQ(shownIn(u"cbSimDownloads"_s), QString::number(number));
        EXPECT_EQ(m_settings->number(settings::keys::kMaxSimDownloads), number);
        const std::size_t before = m_site.requests().size();
        add("/a.mp4");
        m_site.waitForRequests(before + 1);
        end();
    }
}

TEST_F(ChangedSettings, retriesCountForTheTaskThatRuns)
{
    m_settings->setNumber(settings::keys::kMaxRetry, 1);
    start();
    std::atomic<bool> isToFail = false;
    m_site.on("/a.mp4", [&isToFail](test::HttpPeer &peer) {
        isToFail.wait(false);
        peer.send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    });
    const std::uint32_t id = add("/a.mp4");
    m_site.waitForRequests(1);
    changeSettings([](QWidget &dialog) { choose(dialog, u"cbRetryTime"_s, u"0"_s); });
    isToFail = true;
    isToFail.notify_all();
    test::waitUntil("the failure",
                    [&] { return manager().worker(id)->state() == TaskState::Failed; });
    EXPECT_EQ(manager().runningCount(), 0);
    EXPECT_EQ(manager().waitingCount(), 0);
    EXPECT_EQ(m_site.requests().size(), 1U);
    end();
    start();
    EXPECT_EQ(shownIn(u"cbRetryTime"_s), u"0"_s);
}

TEST_F(ChangedSettings, theDropZoneComesAndGoesWithItsBox)
{
    start();
    EXPECT_TRUE(dropZone().isVisible());
    changeSettings([](QWidget &dialog) { click(dialog, u"chkDragDrop"_s); });
    EXPECT_FALSE(dropZone().isVisible());
    end();
    start();
    EXPECT_FALSE(dropZone().isVisible());
    changeSettings([](QWidget &dialog) { click(dialog, u"chkDragDrop"_s); });
    EXPECT_TRUE(dropZone().isVisible());
}

TEST_F(ChangedSettings, theDropZoneStandsForTheMinimisedWindowAsSoonAsItIsTo)
{
    m_settings->setFlag(settings::keys::kShowDragZone, false);
    start();
    window().showMinimized();
    QApplication::processEvents();
    EXPECT_FALSE(dropZone().isVisible());
    window().showNormal();
    changeSettings([](QWidget &dialog) { click(dialog, u"chkMinizeDrag"_s); });
    EXPECT_FALSE(dropZone().isVisible());
    window().showMinimized();
    test::waitUntil("the drop zone", [] { return dropZone().isVisible(); });
}

TEST_F(ChangedSettings, updatesAreCheckedForAtTheNextStart)
{
    start();
    changeSettings([](QWidget &dialog) { click(dialog, u"chkUpdates"_s); });
    EXPECT_TRUE(m_site.requests().empty());
    end();
    start();
    m_site.waitForRequests(1);
    EXPECT_TRUE(m_site.requests().front().startsWith(updateRequest()));
}

TEST_F(ChangedSettings, updatesAreNotCheckedForAtTheNextStart)
{
    m_settings->setNumber(settings::keys::kCheckUpdate, 1);
    start();
    m_site.waitForRequests(1);
    changeSettings([](QWidget &dialog) { click(dialog, u"chkUpdates"_s); });
    end();
    start();
    // A check of its own accord would be asked for before this one.
    const test::BoxWatch boxes(QMessageBox::Ok);
    window().runCommand(language::commands::kCheckUpdates);
    boxes.waitForBoxes(1);
    EXPECT_EQ(m_site.requests().size(), 2U);
}

TEST_F(ChangedSettings, aCheckForUpdatesUnderWayIsNotToldOnceNoneIsWanted)
{
    m_settings->setNumber(settings::keys::kCheckUpdate, 1);
    std::atomic<bool> isToAnswer = false;
    m_site.on("/update?ver=" + QString(platform::build::kVersion).toLatin1(),
              [&isToAnswer](test::HttpPeer &peer) {
                  isToAnswer.wait(false);
                  test::answer("[Version]\r\nMain=9.0.0.0\r\n")(peer);
              });
    start();
    m_site.waitForRequests(1);
    changeSettings([](QWidget &dialog) { click(dialog, u"chkUpdates"_s); });
    isToAnswer = true;
    isToAnswer.notify_all();
    // Had it been told, this would be about a version that was noticed before.
    const test::BoxWatch boxes(QMessageBox::No);
    window().runCommand(language::commands::kCheckUpdates);
    boxes.waitForBoxes(1);
    ASSERT_EQ(boxes.boxes().size(), 1U);
    EXPECT_TRUE(boxes.boxes().front().text.contains(u"is available,would"_s));
}

TEST_F(ChangedSettings, whatIsCancelledChangesNothing)
{
    start();
    bool isClosed = false;
    test::whenModalOpens([&](QWidget &dialog) {
        click(dialog, u"chkDragDrop"_s);
        test::click(*test::control(dialog, u"btnCancel"_s));
        isClosed = true;
    });
    window().runCommand(language::commands::kSettings);
    EXPECT_TRUE(isClosed);
    EXPECT_TRUE(dropZone().isVisible());
    EXPECT_TRUE(m_settings->flag(settings::keys::kShowDragZone));
}

} // namespace tollivar::app
