#include "platform/build_config.h"
#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/add_task_dlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 668;
const QString kWatchPage = u"http://www.youtube.com/watch?v="_s;

} // namespace

class AddTaskDlgTest : public ::testing::Test {
protected:
    CAddTaskDlg &open(const QString &address = {}, const QString &fileName = {})
    {
        m_dialog = std::make_unique<CAddTaskDlg>(nullptr, m_world.settings(), m_texts,
                                                 CAddTaskDlg::Preset{address, fileName});
        m_dialog->show();
        return *m_dialog;
    }

    template<typename Control>
    Control &find(const QString &name)
    {
        return *test::control<Control>(*m_dialog, name);
    }

    void click(const QString &name) { test::click(find<QWidget>(name)); }
    void choose(const QString &list, int item)
    {
        auto &combo = find<QComboBox>(list);
        combo.setCurrentIndex(item);
        Q_EMIT combo.activated(item);
    }
    /// Presses Download and gives the warning that came, empty when the dialog closed.
    QString download()
    {
        QString warning;
        QTimer::singleShot(0, m_dialog.get(), [&warning] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                EXPECT_EQ(box->icon(), QMessageBox::Warning);
                warning = box->text();
                box->accept();
            }
        });
        click(u"btnDownload"_s);
        return warning;
    }

    /// Browses for a folder and does that to the picker; gives what stands in the field then.
    QString browse(const std::function<void(QFileDialog &)> &use)
    {
        // The desktop's own picker could not be driven from here.
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        test::whenModalOpens([&use](QWidget &opened) {
            auto *picker = qobject_cast<QFileDialog *>(&opened);
            ASSERT_NE(picker, nullptr);
            use(*picker);
        });
        click(u"btnBrowse"_s);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
        return find<QLineEdit>(u"editOutputFolder"_s).text();
    }
    static void chooseFolder(QFileDialog &picker, const QString &folder)
    {
        test::control<QLineEdit>(picker, u"fileNameEdit"_s)->setText(folder);
        auto *buttons = picker.findChild<QDialogButtonBox *>();
        buttons->button(QDialogButtonBox::Open)->click();
    }

    test::WindowWorld m_world;
    WindowTexts m_texts = m_world.texts();
    std::unique_ptr<CAddTaskDlg> m_dialog;
};

TEST_F(AddTaskDlgTest, opensWithTheLastFolderAndTheConversionHidden)
{
    CAddTaskDlg &dialog = open(u"http://a/"_s);
    EXPECT_EQ(find<QLineEdit>(u"editOutputFolder"_s).text(), m_world.sandbox().path());
    EXPECT_EQ(find<QLineEdit>(u"editURL"_s).text(), u"http://a/"_s);
    EXPECT_FALSE(find<QWidget>(u"convertOptions"_s).isVisible());
    EXPECT_EQ(dialog.height(), 292);
    EXPECT_EQ(find<QToolButton>(u"btnMore"_s).text(), u"More>>"_s);
}

TEST_F(AddTaskDlgTest, moreShowsTheConversionAndLessHidesIt)
{
    CAddTaskDlg &dialog = open();
    const QPoint place = dialog.pos();
    click(u"btnMore"_s);
    EXPECT_TRUE(find<QWidget>(u"convertOptions"_s).isVisible());
    EXPECT_EQ(dialog.height(), 452);
    EXPECT_EQ(find<QToolButton>(u"btnMore"_s).text(), u"Less<<"_s);
    click(u"btnMore"_s);
    EXPECT_FALSE(find<QWidget>(u"convertOptions"_s).isVisible());
    EXPECT_EQ(dialog.height(), 292);
    EXPECT_EQ(dialog.width(), kWidth);
    EXPECT_EQ(dialog.pos(), place);
}

TEST_F(AddTaskDlgTest, anAddressOfBlanksIsRefusedWithAnExample)
{
    CAddTaskDlg &dialog = open(u"   "_s);
    EXPECT_EQ(download(),
              u"Invalid URL, the URL should like this: "_s + platform::build::kExampleWatchPage);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(find<QLineEdit>(u"editURL"_s).text(), u"   "_s);
}

TEST_F(AddTaskDlgTest, aFolderThatCannotBeUsedIsRefused)
{
    CAddTaskDlg &dialog = open(u"http://a/"_s);
    for (const QString &folder : {u""_s, u"relative"_s, u"INVALID FOLDER"_s, u"/proc/none/x"_s}) {
        find<QLineEdit>(u"editOutputFolder"_s).setText(folder);
        EXPECT_EQ(download(),
                  u"Invaild Folder Path, please select a valid location to save file."_s);
        EXPECT_TRUE(dialog.isVisible());
    }
}

TEST_F(AddTaskDlgTest, anAddressWithoutSchemeGetsOneAndItsEndBecomesTheName)
{
    CAddTaskDlg &dialog = open(u" site.example/x/a.flv "_s);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    const tasks::TaskInfo &task = dialog.task();
    EXPECT_EQ(task.strOriURL, u"http://site.example/x/a.flv"_s);
    EXPECT_EQ(task.strOutputName, u"-x-a.flv"_s);
    EXPECT_EQ(task.strOutputFolder, m_world.sandbox().path() + u'/');
    EXPECT_EQ(task.bAutoRename, 1);
    EXPECT_EQ(task.nModeLow, 0);
    EXPECT_EQ(task.strFileType, u".flv"_s);
    EXPECT_EQ(m_world.settings().GetLastFolder(), m_world.sandbox().path());
}

TEST_F(AddTaskDlgTest, aTypedStreamIsFetchedAsItIs)
{
    const QString stream = u"rtmp://media.example/live/evening"_s;
    open(stream);
    EXPECT_EQ(download(), QString());
    const tasks::TaskInfo &task = m_dialog->task();
    EXPECT_EQ(task.strOriURL, stream);
    EXPECT_EQ(task.strDownloadUrl, stream);
    EXPECT_EQ(task.nProtocol, tasks::kProtocolRtmp);
    EXPECT_EQ(task.nModeLow, static_cast<int>(tasks::DownloadMethod::Direct));
    EXPECT_EQ(task.strFileType, u".flv"_s);
    EXPECT_EQ(task.strOutputName, u"-evening"_s);
}

TEST_F(AddTaskDlgTest, aWatchPageIsNamedAfterItsVideo)
{
    CAddTaskDlg &dialog = open(kWatchPage + u"abc"_s);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().strOutputName, u"abc"_s);
}

TEST_F(AddTaskDlgTest, aWatchPageWithoutAVideoIsNamedAfterTheEndOfItsAddress)
{
    CAddTaskDlg &dialog = open(kWatchPage);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().strOutputName, u"watch-v="_s);
}

TEST_F(AddTaskDlgTest, theQualityIsOfferedForPagesOfTheVideoSiteInTheFirstModeOnly)
{
    CAddTaskDlg &dialog = open(u"http://www.YouTube.com/x"_s);
    EXPECT_TRUE(find<QComboBox>(u"cbYoutubeMode"_s).isVisible());
    EXPECT_EQ(find<QComboBox>(u"cbYoutubeMode"_s).currentIndex(), 1);
    EXPECT_EQ(find<QComboBox>(u"cbMode"_s).width(), 255);
    choose(u"cbYoutubeMode"_s, 3);
    choose(u"cbMode"_s, 1);
    EXPECT_FALSE(find<QComboBox>(u"cbYoutubeMode"_s).isVisible());
    EXPECT_EQ(find<QComboBox>(u"cbMode"_s).minimumWidth(), 360);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().nModeHigh, 0);
    EXPECT_EQ(dialog.task().nModeLow, 2);
    EXPECT_EQ(dialog.task().strFileType, u".swf"_s);
}

TEST_F(AddTaskDlgTest, keepsItsSizeInEveryLanguageWhateverItShows)
{
    m_world.open();
    for (const QString &language : m_texts.languages()) {
        m_texts.applyLanguage(language);
        CAddTaskDlg &dialog = open();
        const auto expectSize = [&](int height) {
            QCoreApplication::sendPostedEvents();
            EXPECT_EQ(dialog.size(), QSize(kWidth, height)) << language.toStdString();
        };
        expectSize(292);
        test::type(find<QLineEdit>(u"editURL"_s), kWatchPage);
        expectSize(292);
        auto &quality = find<QComboBox>(u"cbYoutubeMode"_s);
        EXPECT_GE(quality.width(), quality.sizeHint().width()) << language.toStdString();
        click(u"btnMore"_s);
        expectSize(452);
        find<QLineEdit>(u"editURL"_s).clear();
        click(u"btnMore"_s);
        expectSize(292);
    }
}

TEST_F(AddTaskDlgTest, theQualityEndsWhereTheFieldsAboveDo)
{
    const CAddTaskDlg &dialog = open(kWatchPage + u"x"_s);
    const auto end = [&dialog](const QWidget &field) {
        return field.mapTo(&dialog, QPoint(field.width(), 0)).x();
    };
    EXPECT_EQ(end(find<QWidget>(u"cbYoutubeMode"_s)), end(find<QWidget>(u"editURL"_s)));
    EXPECT_EQ(end(find<QWidget>(u"btnBrowse"_s)), end(find<QWidget>(u"editURL"_s)));
}

TEST_F(AddTaskDlgTest, theChosenQualityReachesTheTask)
{
    CAddTaskDlg &dialog = open();
    test::type(find<QLineEdit>(u"editURL"_s), kWatchPage + u"x"_s);
    choose(u"cbYoutubeMode"_s, 3);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().nModeHigh, 3);
}

TEST_F(AddTaskDlgTest, aKnownMediaFileLocksAddressAndMode)
{
    CAddTaskDlg &dialog = open(u"http://a/page"_s, u"A: title?"_s);
    EXPECT_FALSE(find<QLineEdit>(u"editURL"_s).isEnabled());
    EXPECT_FALSE(find<QComboBox>(u"cbMode"_s).isEnabled());
    EXPECT_EQ(find<QComboBox>(u"cbMode"_s).currentText(), u"Download File Directly"_s);
    EXPECT_FALSE(find<QCheckBox>(u"chkRename"_s).isEnabled());
    EXPECT_FALSE(find<QCheckBox>(u"chkRename"_s).isChecked());
    EXPECT_TRUE(find<QLineEdit>(u"editFileName"_s).isEnabled());
    dialog.setAddress(u"http://other/"_s);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().strOriURL, u"http://a/page"_s);
    EXPECT_EQ(dialog.task().strOutputName, u"A- title-"_s);
    EXPECT_EQ(dialog.task().nModeLow, 6);
    EXPECT_EQ(dialog.task().strFileType, QString());
    EXPECT_EQ(dialog.task().bAutoRename, 0);
}

TEST_F(AddTaskDlgTest, anOwnNameCountsOnlyWithoutAutomaticNaming)
{
    CAddTaskDlg &dialog = open(u"http://a/12345678"_s);
    EXPECT_FALSE(find<QLineEdit>(u"editFileName"_s).isEnabled());
    click(u"chkRename"_s);
    EXPECT_TRUE(find<QLineEdit>(u"editFileName"_s).isEnabled());
    find<QLineEdit>(u"editFileName"_s).setText(u" mine/yours "_s);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().strOutputName, u"mine-yours"_s);
    EXPECT_EQ(dialog.task().bAutoRename, 0);

    CAddTaskDlg &again = open(u"http://a/12345678"_s);
    click(u"chkRename"_s);
    find<QLineEdit>(u"editFileName"_s).setText(u"mine"_s);
    click(u"chkRename"_s);
    EXPECT_FALSE(find<QLineEdit>(u"editFileName"_s).isEnabled());
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(again.task().strOutputName, u"12345678"_s);
}

TEST_F(AddTaskDlgTest, aProfileFillsTheListsAndTheTask)
{
    CAddTaskDlg &dialog = open(u"http://a/"_s);
    auto &profiles = find<QComboBox>(u"cbProfile"_s);
    EXPECT_EQ(profiles.count(), 15);
    EXPECT_EQ(profiles.currentText(), convert::ProfileTable::defaultName());
    choose(u"cbProfile"_s, profiles.findText(u"PSP - PSP MPEG-4 Video (*.mp4)"_s));
    EXPECT_EQ(find<QComboBox>(u"cbResolution"_s).currentText(), u"320x240"_s);
    EXPECT_EQ(find<QComboBox>(u"cbVideoBitrate"_s).currentText(), u"512"_s);
    EXPECT_EQ(find<QComboBox>(u"cbAudioBitrate"_s).currentText(), u"64"_s);
    EXPECT_EQ(find<QComboBox>(u"cbVideoCodec"_s).currentText(), u"Auto"_s);
    EXPECT_EQ(find<QComboBox>(u"cbResolution"_s).itemText(0), u"160x112"_s);
    choose(u"cbResolution"_s, 0);
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().m_ConvOpts.m_csVideoSizeOpts, u"160x112"_s);
    EXPECT_EQ(dialog.task().m_ConvOpts.m_csConvParam, u"-f psp"_s);
    EXPECT_EQ(dialog.task().m_ConvOpts.m_csType, u".mp4"_s);
}

TEST_F(AddTaskDlgTest, browsingBeginsAtTheFieldsFolderAndOffersFoldersOnly)
{
    open();
    QDir(m_world.sandbox().path()).mkdir(u"films"_s);
    find<QLineEdit>(u"editOutputFolder"_s).setText(m_world.sandbox().file(u"films"_s));
    browse([this](QFileDialog &picker) {
        EXPECT_EQ(picker.windowTitle(), m_world.languages().text(u"strSelectFolder"_s));
        EXPECT_EQ(picker.directory().path(), m_world.sandbox().file(u"films"_s));
        EXPECT_EQ(picker.fileMode(), QFileDialog::Directory);
        EXPECT_TRUE(picker.testOption(QFileDialog::ShowDirsOnly));
        picker.reject();
    });
}

TEST_F(AddTaskDlgTest, aChosenFolderStandsInTheFieldAndIsTheTasks)
{
    CAddTaskDlg &dialog = open(u"http://a/12345678"_s);
    QDir(m_world.sandbox().path()).mkdir(u"my films"_s);
    const QString films = m_world.sandbox().file(u"my films"_s);
    EXPECT_EQ(browse([&films](QFileDialog &picker) { chooseFolder(picker, films); }), films);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(download(), QString());
    EXPECT_EQ(dialog.task().strOutputFolder, films + u'/');
    EXPECT_EQ(m_world.settings().GetLastFolder(), films);
}

TEST_F(AddTaskDlgTest, aCancelledPickerChangesNothing)
{
    CAddTaskDlg &dialog = open();
    for (const QString &typed : {m_world.sandbox().path(), u"not a folder"_s, QString()}) {
        find<QLineEdit>(u"editOutputFolder"_s).setText(typed);
        EXPECT_EQ(browse([](QFileDialog &picker) { picker.reject(); }), typed);
        EXPECT_TRUE(dialog.isVisible());
    }
}

TEST_F(AddTaskDlgTest, cancelAndCloseGiveNothing)
{
    for (const QString &name : {u"btnCancel"_s, u"btnClose"_s}) {
        CAddTaskDlg &dialog = open(u"http://a/"_s);
        click(name);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
    }
}

} // namespace tollivar::ui
