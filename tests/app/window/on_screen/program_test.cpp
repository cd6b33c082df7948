#include "app/language/menu_tables.h"
#include "platform/build_config.h"
#include "tests/app/window/on_screen/program_fixture.h"
#include "tests/support/box_watch.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/dialogs/add_task_dlg.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/text_ui.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QTimer>

namespace tollivar::app {

using namespace Qt::StringLiterals;

namespace {

/// A name with everything that a command line could take apart or for an option.
const QString kHardName = u"-x \"two  blanks\" 'ž' $(id) 日本"_s;

void clickOnPopup(const QString &button)
{
    test::click(*test::control(*ui::CTaskNotifyDlg::newest(), button));
}

} // namespace

using CompletionPopup = ProgramTest;

TEST_F(CompletionPopup, opensTheFolderAlsoWhenTheFileWasMovedAway)
{
    start();
    ASSERT_TRUE(QFile::rename(complete("/a.mp4"), m_sandbox.file(u"elsewhere.mp4"_s)));
    clickOnPopup(u"btnOpenFolder"_s);
    EXPECT_EQ(m_opener.waitForFirst(), m_sandbox.file(u"out"_s));
}

TEST_F(CompletionPopup, handsAFileOfAnyNameToThePlayerAsOneArgument)
{
    const test::NotingProgram player(m_sandbox, u"ClipPlayer"_s);
    start();
    const QString file = complete("/a.mp4", kHardName);
    EXPECT_EQ(file, m_sandbox.file(u"out/"_s) + kHardName + u".mp4"_s);
    EXPECT_TRUE(QFile::exists(file));
    auto *name = test::control<DuiLib::CTextUI>(*ui::CTaskNotifyDlg::newest(), u"textFileName"_s);
    Q_EMIT name->linkActivated(u"#"_s);
    player.waitForStarts(1);
    EXPECT_EQ(player.starts(), (std::vector{QStringList{u"-file"_s, file}}));
}

TEST_F(CompletionPopup, handsTheFileToTheConverterThatLiesBesideTheProgram)
{
    const test::NotingProgram converter(m_sandbox, u"quenmoor"_s);
    const test::BoxWatch boxes(QMessageBox::Ok);
    start();
    const QString file = complete("/a.mp4", kHardName);
    clickOnPopup(u"btnConvert"_s);
    converter.waitForStarts(1);
    EXPECT_EQ(converter.starts(), (std::vector{QStringList{u"-file"_s, file}}));
    EXPECT_TRUE(boxes.boxes().empty());
}

TEST_F(CompletionPopup, saysThatTheConverterIsNotInstalled)
{
    const test::BoxWatch boxes(QMessageBox::Ok);
    start();
    static_cast<void>(complete("/a.mp4"));
    clickOnPopup(u"btnConvert"_s);
    EXPECT_EQ(boxes.boxes(),
              (std::vector{test::BoxWatch::Box{
                  QString(platform::build::kProductName),
                  u" Quenmoor Converter has not been installed, please install it with the setup "
                  u"package."_s,
                  QMessageBox::Ok, QMessageBox::Question}}));
    test::waitUntil("the popup to go", [] { return ui::CTaskNotifyDlg::newest() == nullptr; });
}

/// Notes each address that is offered, and cancels the dialog that offers it.
class WatchedClipboard : public ProgramTest {
protected:
    class Offers final : public QObject {
    public:
        Offers() { qApp->installEventFilter(this); }
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            auto *dialog = qobject_cast<ui::CAddTaskDlg *>(watched);
            if (dialog != nullptr && event->type() == QEvent::Show) {
                addresses.append(test::control<QLineEdit>(*dialog, u"editURL"_s)->text());
                // Once it stands: its own event loop is not running yet.
                QTimer::singleShot(0, dialog, &QDialog::reject);
            }
            return false;
        }

        QStringList addresses;
    };

    /// Until everything that copying leads to has happened.
    static void copy(const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        QApplication::processEvents();
    }

    const QString m_watchPage = u"http://www.youtube.com/watch?v=another1234"_s;
    Offers m_offers;
};

TEST_F(WatchedClipboard, offersWhatOthersCopyAndNotWhatTheProgramDoes)
{
    start();
    tasks::TaskInfo task;
    task.strOriURL = u"http://www.youtube.com/watch?v=ourown12345"_s;
    manager().addTask(task, tasks::TaskOrigin::New);
    window().findChild<ui::CListCtrlEx *>()->selectRows({0});
    window().runCommand(language::commands::kCopyWebAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), task.strOriURL + u"\r\n"_s);
    QApplication::processEvents();
    EXPECT_EQ(m_offers.addresses, QStringList());
    copy(m_watchPage);
    EXPECT_EQ(m_offers.addresses, QStringList{m_watchPage});
}

TEST_F(WatchedClipboard, isLeftAloneWhereItIsNotToBeWatched)
{
    m_settings->setFlag(settings::keys::kMonitorVideoSite, false);
    start();
    copy(m_watchPage);
    EXPECT_EQ(dropZone().receivedText(), QString());
    EXPECT_EQ(m_offers.addresses, QStringList());
}

} // namespace tollivar::app
