#include "companions/sniff_browser/media_model.h"
#include "companions/sniff_browser/media_panel.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeView>

#include <gmock/gmock.h>

namespace tollivar::sniff {

using namespace Qt::StringLiterals;
using capture::MediaFound;
using ::testing::ElementsAre;

namespace {

MediaFound clip(const QString &name, std::optional<std::int64_t> length = 374'290)
{
    return {.address = u"http://media.example/"_s + name + u".mp4"_s,
            .title = u"Title of "_s + name,
            .mediaType = u"video/mp4"_s,
            .extension = u".mp4"_s,
            .length = length,
            .page = u"http://site.example/watch"_s};
}

/// So many, the newest first.
std::vector<MediaFound> clips(int count)
{
    std::vector<MediaFound> all;
    for (int number = count; number > 0; --number) {
        all.push_back(clip(QString::number(number)));
    }
    return all;
}

class MediaPanelTest : public ::testing::Test {
protected:
    MediaPanelTest()
    {
        QLocale::setDefault(QLocale::c());
        QObject::connect(&m_panel, &MediaPanel::downloadWanted,
                         [this](const std::vector<MediaFound> &media) {
                             m_chosen.clear();
                             for (const MediaFound &medium : media) {
                                 m_chosen.push_back(medium.address);
                             }
                         });
        m_panel.show();
    }

    QTreeView &view() { return *test::control<QTreeView>(m_panel, u"media"_s); }
    QString cell(int row, int column)
    {
        return view().model()->index(row, column).data().toString();
    }
    void download() { test::click(*test::control(m_panel, u"download"_s)); }

    MediaPanel m_panel;
    std::vector<QString> m_chosen;
};

} // namespace

TEST_F(MediaPanelTest, tellsWhatToDoWhileThereIsNothing)
{
    EXPECT_TRUE(test::control<QLabel>(m_panel, u"hint"_s)->isVisible());
    EXPECT_FALSE(test::control(m_panel, u"download"_s)->isEnabled());
    EXPECT_EQ(m_panel.windowTitle(), u"Capture Browser"_s);
}

TEST_F(MediaPanelTest, theKeyboardBeginsWhereTheMediaAreAndNotAtAButton)
{
    m_panel.activateWindow();
    test::waitUntil("the keyboard", [&] { return m_panel.focusWidget() != nullptr; });
    EXPECT_EQ(m_panel.focusWidget(), test::control(m_panel, u"hint"_s));
    m_panel.setMedia({clip(u"one"_s)});
    EXPECT_EQ(m_panel.focusWidget(), &view());
}

TEST_F(MediaPanelTest, showsTitleTypeSizeAndSite)
{
    m_panel.setMedia({clip(u"one"_s), clip(u"two"_s, std::nullopt)});
    EXPECT_EQ(cell(0, MediaModel::Title), u"Title of one"_s);
    EXPECT_EQ(cell(0, MediaModel::Type), u"MP4"_s);
    EXPECT_EQ(cell(0, MediaModel::Size), u"365.5 kB"_s);
    EXPECT_EQ(cell(0, MediaModel::Site), u"site.example"_s);
    EXPECT_EQ(cell(1, MediaModel::Size), QString());
    EXPECT_EQ(m_panel.windowTitle(), u"Capture Browser (2)"_s);
}

TEST_F(MediaPanelTest, theBestMediumIsChosenAlready)
{
    m_panel.setMedia({clip(u"best"_s), clip(u"other"_s)});
    download();
    EXPECT_THAT(m_chosen, ElementsAre(clip(u"best"_s).address));
}

TEST_F(MediaPanelTest, aSelectionStaysWhateverComes)
{
    m_panel.setMedia({clip(u"a"_s), clip(u"b"_s)});
    view().setCurrentIndex(view().model()->index(1, 0));
    m_panel.setMedia({clip(u"new"_s), clip(u"a"_s), clip(u"b"_s)});
    download();
    EXPECT_THAT(m_chosen, ElementsAre(clip(u"b"_s).address));
}

TEST_F(MediaPanelTest, aScatteredSelectionStaysWhateverComesBetween)
{
    m_panel.setMedia({clip(u"a"_s), clip(u"b"_s), clip(u"c"_s), clip(u"d"_s)});
    for (const int row : {0, 1, 3}) {
        view().selectionModel()->select(view().model()->index(row, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    m_panel.setMedia(
        {clip(u"new"_s), clip(u"a"_s), clip(u"other"_s), clip(u"b"_s), clip(u"c"_s), clip(u"d"_s)});
    download();
    EXPECT_THAT(m_chosen,
                ElementsAre(clip(u"a"_s).address, clip(u"b"_s).address, clip(u"d"_s).address));
}

TEST_F(MediaPanelTest, theRowOfTheKeyboardStaysAmongSelectedOnes)
{
    m_panel.setMedia({clip(u"a"_s), clip(u"b"_s), clip(u"c"_s)});
    view().selectAll();
    view().selectionModel()->setCurrentIndex(view().model()->index(2, 0),
                                             QItemSelectionModel::NoUpdate);
    m_panel.setMedia({clip(u"new"_s), clip(u"a"_s), clip(u"b"_s), clip(u"c"_s)});
    EXPECT_EQ(view().currentIndex().row(), 3);
}

TEST_F(MediaPanelTest, whatIsInSightStaysInSightWhateverComes)
{
    const auto titleOnTop = [this] { return view().indexAt(QPoint(0, 0)).data().toString(); };
    m_panel.setMedia(clips(100));
    view().scrollTo(view().model()->index(60, 0), QAbstractItemView::PositionAtTop);
    const QString title = titleOnTop();
    m_panel.setMedia(clips(101));
    EXPECT_EQ(titleOnTop(), title);
    view().scrollToTop();
    m_panel.setMedia(clips(102));
    EXPECT_EQ(titleOnTop(), u"Title of 102"_s);
}

TEST_F(MediaPanelTest, enterInTheListDownloads)
{
    m_panel.setMedia({clip(u"a"_s)});
    test::press(view(), Qt::Key_Return);
    EXPECT_THAT(m_chosen, ElementsAre(clip(u"a"_s).address));
}

TEST_F(MediaPanelTest, severalAreHandedOverInTheirOrderAndCopied)
{
    m_panel.setMedia({clip(u"a"_s), clip(u"b"_s)});
    view().selectAll();
    download();
    EXPECT_THAT(m_chosen, ElementsAre(clip(u"a"_s).address, clip(u"b"_s).address));
    test::click(*test::control(m_panel, u"copy"_s));
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              clip(u"a"_s).address + u'\n' + clip(u"b"_s).address);
}

TEST_F(MediaPanelTest, aMissingBrowserIsASentenceInsteadOfAnEmptyList)
{
    m_panel.showProblem(u"no browser is installed; install chromium"_s);
    EXPECT_EQ(test::control<QLabel>(m_panel, u"hint"_s)->text(),
              u"no browser is installed; install chromium"_s);
}

TEST_F(MediaPanelTest, markupInATitleIsText)
{
    MediaFound medium = clip(u"a"_s);
    medium.title = u"<b>bold</b>"_s;
    m_panel.setMedia({medium});
    EXPECT_EQ(cell(0, MediaModel::Title), u"<b>bold</b>"_s);
    EXPECT_EQ(test::control<QLabel>(m_panel, u"hint"_s)->textFormat(), Qt::PlainText);
    EXPECT_EQ(test::control<QLabel>(m_panel, u"status"_s)->textFormat(), Qt::PlainText);
}

TEST_F(MediaPanelTest, everythingHasANameForScreenReaders)
{
    EXPECT_FALSE(view().accessibleName().isEmpty());
    for (const QString &name : {u"download"_s, u"copy"_s, u"forget"_s}) {
        EXPECT_FALSE(test::control<QPushButton>(m_panel, name)->text().isEmpty());
        EXPECT_FALSE(test::control(m_panel, name)->toolTip().isEmpty());
    }
}

} // namespace tollivar::sniff
