#include "app/language/string_table.h"
#include "app/window/updates.h"
#include "platform/auto_reset_event.h"
#include "platform/build_config.h"
#include "tests/support/box_watch.h"
#include "tests/support/http_site.h"
#include "tests/support/noting_program.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/dialogs/checking_dlg.h"
#include "ui/skin/paint_manager.h"
#include "update/update_info.h"
#include "update/update_schedule.h"

#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

#include <atomic>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using Box = test::BoxWatch::Box;

const QString kTitle = u"Tollivar Updater"_s;
const Box kNoUpdate{kTitle, u"There is no new update available."_s, QMessageBox::Ok,
                    QMessageBox::Information};
const Box kUnreachable{kTitle,
                       u"Can not connect to the server, please check your network connection."_s,
                       QMessageBox::Ok, QMessageBox::Warning};

Box question(const QString &text)
{
    return {kTitle, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::Question};
}

/// What a person sees of update checks, with a server that the test scripts.
class UpdateBoxes : public ::testing::Test {
protected:
    void SetUp() override
    {
        DuiLib::CPaintManagerUI::SetInstance();
        qputenv("TOLLIVAR_UPDATE_URL", m_site.address("/check").toLatin1());
        startAnew();
    }
    void TearDown() override
    {
        m_updates.reset();
        qunsetenv("TOLLIVAR_UPDATE_URL");
    }

    /// As with every start of the program.
    void startAnew()
    {
        m_updates = std::make_unique<Updates>(
            m_owner,
            DataPaths{.directory = m_sandbox.path(),
                      .commonDirectory = {},
                      .settings = {},
                      .update = m_sandbox.file(u"update.ini"_s),
                      .updateInTransit = m_sandbox.file(u"tmpupdate.ini"_s),
                      .legacyTasks = {},
                      .tasks = {},
                      .installation = {}},
            ui::WindowTexts{.text = [this](const QString &id) { return m_texts.text(id); },
                            .dialog = [](const QString &, const QString &) { return QString(); },
                            .menu = {},
                            .languages = {},
                            .currentLanguage = {},
                            .applyLanguage = {}});
    }
    void play(test::HttpSite::Script script)
    {
        m_site.on("/check?ver=" + QString(platform::build::kVersion).toLatin1(), std::move(script));
    }
    void answer(const QByteArray &version, const QByteArray &more = {})
    {
        play(test::answer("[Version]\r\nMain=" + version + "\r\n" + more));
    }
    /// A version that was noticed before.
    void notice(const QByteArray &version, const QByteArray &more = {})
    {
        m_sandbox.write(u"update.ini"_s, "[Version]\r\nMain=" + version + "\r\n" + more);
    }

    /// A check at a start, until everything that a person sees of it is over.
    void checkAtStart()
    {
        m_updates->checkIfDue(kEveryStart);
        waitUntilTold();
    }
    /// A check that somebody asks for, until its box is answered.
    void checkNow()
    {
        m_updates->checkNow();
        EXPECT_TRUE(checkingWindow().isVisible());
        m_boxes.waitForBoxes(m_boxes.boxes().size() + 1);
        EXPECT_FALSE(checkingWindow().isVisible());
        ++m_requests;
    }
    /// A check whose window somebody closes before the answer comes.
    void checkAndCloseTheWindow()
    {
        m_updates->checkNow();
        test::click(*test::control(checkingWindow(), u"btnClose"_s));
        EXPECT_FALSE(checkingWindow().isVisible());
        waitUntilTold();
    }
    /// The next check begins when the result of the one before is told.
    void waitUntilTold()
    {
        m_site.waitForRequests(++m_requests);
        play(test::neverAnswer());
        m_updates->checkIfDue(kEveryStart);
        m_site.waitForRequests(++m_requests);
        QApplication::processEvents();
    }
    [[nodiscard]] const ui::CheckingDialog &checkingWindow() const
    {
        return *m_owner.findChild<ui::CheckingDialog *>();
    }

    static constexpr std::chrono::seconds kLong{60};
    static constexpr int kEveryStart = static_cast<int>(update::UpdateMode::EveryStart);

    test::Sandbox m_sandbox;
    test::DesktopOpener m_opener{m_sandbox};
    /// Outlives the site, whose scripts wait for it.
    platform::AutoResetEvent m_goOn;
    test::HttpSite m_site;
    std::size_t m_requests = 0;
    language::StringTable m_texts;
    test::BoxWatch m_boxes{QMessageBox::No};
    QWidget m_owner;
    std::unique_ptr<Updates> m_updates;
};

TEST_F(UpdateBoxes, aNewVersionIsAskedAboutWithItsChanges)
{
    answer("9.1.0.0", "WhatsNew=one\\r\\ntwo\r\n");
    checkNow();
    EXPECT_EQ(m_boxes.boxes(),
              std::vector{question(u"A new version(9.1.0.0) of Tollivar is available,would you "
                                   u"like to download it now?\r\n\r\nWhat's New?\r\none\r\ntwo\r\n"
                                   u"\r\nClick Yes to download, click No to cancel."_s)});
}

TEST_F(UpdateBoxes, aVersionThatWasNoticedBeforeIsAskedAboutInOtherWords)
{
    notice("9.1.0.0", "WhatsNew=one\r\n");
    answer("9.1.0.0", "WhatsNew=one\r\n");
    checkNow();
    EXPECT_EQ(m_boxes.boxes(),
              std::vector{question(u"A new version(9.1.0.0) of Tollivar is available, would you "
                                   u"like to download it now?\r\n\r\nWhat's New?\r\none\r\n"
                                   u"\r\nClick Yes to download, click No to cancel."_s)});
}

TEST_F(UpdateBoxes, whoAsksIsToldThatThereIsNothingNew)
{
    answer(QString(platform::build::kVersion).toLatin1());
    checkNow();
    EXPECT_EQ(m_boxes.boxes(), std::vector{kNoUpdate});
}

TEST_F(UpdateBoxes, whoAsksIsToldThatTheServerIsNotReached)
{
    play(test::answerCut({}, 10));
    checkNow();
    EXPECT_EQ(m_boxes.boxes(), std::vector{kUnreachable});
}

TEST_F(UpdateBoxes, whoAsksIsToldOfAnAnswerThatIsNone)
{
    play(test::answerStatus("404 Not Found"));
    checkNow();
    EXPECT_EQ(m_boxes.boxes(), std::vector{kUnreachable});
}

TEST_F(UpdateBoxes, aStartTellsOfANewVersion)
{
    answer("9.1.0.0");
    m_updates->checkIfDue(kEveryStart);
    m_boxes.waitForBoxes(1);
    EXPECT_TRUE(m_boxes.boxes().front().text.startsWith(
        u"A new version(9.1.0.0) of Tollivar is available,would you"_s));
    EXPECT_EQ(m_owner.findChild<ui::CheckingDialog *>(), nullptr);
}

TEST_F(UpdateBoxes, aStartIsSilentAboutAVersionThatWasNoticedBefore)
{
    notice("9.1.0.0");
    answer("9.1.0.0");
    checkAtStart();
    EXPECT_TRUE(m_boxes.boxes().empty());
    EXPECT_GT(update::lastCheckTime(m_sandbox.file(u"update.ini"_s)).date().year(), 2020);
}

TEST_F(UpdateBoxes, aStartIsSilentWhenThereIsNothingNew)
{
    answer("0.0.0.1");
    checkAtStart();
    EXPECT_TRUE(m_boxes.boxes().empty());
    EXPECT_GT(update::lastCheckTime(m_sandbox.file(u"update.ini"_s)).date().year(), 2020);
}

TEST_F(UpdateBoxes, aStartIsSilentWhenTheServerIsNotReached)
{
    play(test::answerCut({}, 10));
    checkAtStart();
    EXPECT_TRUE(m_boxes.boxes().empty());
    EXPECT_LT(update::lastCheckTime(m_sandbox.file(u"update.ini"_s)).date().year(), 2020);
}

TEST_F(UpdateBoxes, whoClosedTheWindowIsToldOfANewVersionAlone)
{
    for (const QByteArray version : {"9.1.0.0", "9.1.0.0", "0.0.0.1"}) {
        answer(version);
        checkAndCloseTheWindow();
        EXPECT_EQ(m_boxes.boxes().size(), 1U) << version.constData();
        startAnew();
    }
    play(test::answerStatus("404 Not Found"));
    checkAndCloseTheWindow();
    EXPECT_EQ(m_boxes.boxes().size(), 1U);
}

TEST_F(UpdateBoxes, yesOpensTheServersPage)
{
    answer("9.1.0.0", "DownloadPage=https://get.example/new\r\n");
    m_boxes.answerWith(QMessageBox::Yes);
    checkNow();
    EXPECT_EQ(m_opener.waitForFirst(), u"https://get.example/new"_s);
}

TEST_F(UpdateBoxes, noAndAClosedQuestionOpenNothing)
{
    answer("9.1.0.0", "DownloadPage=https://get.example/first\r\n");
    checkNow();
    m_boxes.answerWith(QMessageBox::NoButton);
    checkNow();
    answer("9.2.0.0", "DownloadPage=https://get.example/second\r\n");
    m_boxes.answerWith(QMessageBox::Yes);
    checkNow();
    EXPECT_EQ(m_opener.waitForFirst(), u"https://get.example/second"_s);
    EXPECT_EQ(m_boxes.boxes().size(), 3U);
}

TEST_F(UpdateBoxes, aPageThatIsNotOfTheWebIsNotOpened)
{
    m_boxes.answerWith(QMessageBox::Yes);
    answer("9.1.0.0", "DownloadPage=file:///etc/passwd\r\n");
    checkNow();
    EXPECT_EQ(m_opener.waitForFirst(), QString(platform::build::kDownloadPage));
}

TEST_F(UpdateBoxes, aLongListOfChangesLeavesTheQuestionOnTheScreen)
{
    for (const QByteArray &changes :
         {QByteArray(32'000, 'x'), QByteArray("x\\r\\n").repeated(5'000),
          QByteArray("\xE6\x96\xB0").repeated(10'000), QByteArray("word ").repeated(6'000)}) {
        m_sandbox.write(u"update.ini"_s, {});
        answer("9.1.0.0" + QByteArray(30'000, '0'), "WhatsNew=" + changes + "\r\n");
        m_boxes.onBox([](QMessageBox &box) {
            box.adjustSize();
            EXPECT_LE(box.height(), 700);
            EXPECT_LE(box.width(), 1'100);
            EXPECT_TRUE(box.text().contains(u"\r\n\u2026\r\n\r\nClick Yes"_s));
        });
        checkNow();
    }
    EXPECT_EQ(m_boxes.boxes().size(), 4U);
}

TEST_F(UpdateBoxes, speakTheChosenLanguage)
{
    m_texts.set(u"strUpdater"_s, u"Neuheiten"_s);
    m_texts.set(u"strMsgUpdateNews"_s, u"%1 ist neu: %2"_s);
    m_texts.set(u"strMsgUpdateKnown"_s, u"%1 ist bekannt: %2"_s);
    m_texts.set(u"strMsgNoUpdate"_s, u"Nichts"_s);
    m_texts.set(u"strMsgNoServer"_s, u"Niemand"_s);
    answer("9.1.0.0", "WhatsNew=%1 %2\r\n");
    checkNow();
    checkNow();
    answer("0.0.0.1");
    checkNow();
    play(test::answerStatus("404 Not Found"));
    checkNow();
    QStringList texts;
    for (const Box &box : m_boxes.boxes()) {
        EXPECT_EQ(box.title, u"Neuheiten"_s);
        texts.append(box.text);
    }
    EXPECT_EQ(texts, (QStringList{u"9.1.0.0 ist neu: %1 %2"_s, u"9.1.0.0 ist bekannt: %1 %2"_s,
                                  u"Nichts"_s, u"Niemand"_s}));
}

TEST_F(UpdateBoxes, markupFromTheServerIsShownAsText)
{
    answer("9.1.0.0", "WhatsNew=<img src='http://spy.example/'> <b>x</b> &amp;\r\n");
    m_boxes.onBox([](QMessageBox &box) {
        const auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s);
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_TRUE(label->text().contains(u"<img src='http://spy.example/'> <b>x</b> &amp;"_s));
    });
    checkNow();
    EXPECT_EQ(m_boxes.boxes().size(), 1U);
}

TEST_F(UpdateBoxes, whoAsksWhileAStartsCheckStallsWaitsForTheOwnAnswer)
{
    play([this](test::HttpPeer &) { EXPECT_TRUE(m_goOn.wait(kLong)); });
    m_updates->checkIfDue(kEveryStart);
    m_site.waitForRequests(1);
    answer("0.0.0.1");
    m_updates->checkNow();
    m_goOn.set();
    m_boxes.waitForBoxes(1);
    EXPECT_EQ(m_boxes.boxes(), std::vector{kNoUpdate});
    EXPECT_FALSE(checkingWindow().isVisible());
}

TEST_F(UpdateBoxes, newsOfAStartsCheckAnswerWhoAsksMeanwhile)
{
    play([this](test::HttpPeer &peer) {
        EXPECT_TRUE(m_goOn.wait(kLong));
        test::answer("[Version]\r\nMain=9.1.0.0\r\n")(peer);
    });
    m_updates->checkIfDue(kEveryStart);
    m_site.waitForRequests(1);
    answer("9.1.0.0");
    m_updates->checkNow();
    m_boxes.onBox([this](QMessageBox &) { EXPECT_FALSE(checkingWindow().isVisible()); });
    m_goOn.set();
    m_boxes.waitForBoxes(1);
    m_requests = 1;
    waitUntilTold();
    EXPECT_EQ(m_boxes.boxes().size(), 1U) << "not asked twice about the same";
}

TEST_F(UpdateBoxes, aModeThatNeverChecksSilencesTheCheckUnderWay)
{
    play([this](test::HttpPeer &peer) {
        EXPECT_TRUE(m_goOn.wait(kLong));
        test::answer("[Version]\r\nMain=9.1.0.0\r\n")(peer);
    });
    m_updates->checkIfDue(kEveryStart);
    m_site.waitForRequests(1);
    m_updates->setMode(static_cast<int>(update::UpdateMode::Never));
    m_goOn.set();
    answer("0.0.0.1");
    checkNow();
    EXPECT_EQ(m_boxes.boxes(), std::vector{kNoUpdate});
}

TEST_F(UpdateBoxes, itsEndLeavesAServerThatDoesNotAnswer)
{
    std::atomic<bool> hasLeft = false;
    play([&hasLeft](test::HttpPeer &peer) {
        peer.stall();
        hasLeft = true;
    });
    m_updates->checkNow();
    m_site.waitForRequests(1);
    m_updates.reset();
    test::waitUntil("the client's leave", [&hasLeft] { return hasLeft.load(); });
    EXPECT_TRUE(m_boxes.boxes().empty());
    EXPECT_EQ(m_owner.findChild<ui::CheckingDialog *>(), nullptr);
}

} // namespace
} // namespace tollivar::app
