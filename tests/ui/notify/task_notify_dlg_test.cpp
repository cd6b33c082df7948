#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/text_ui.h"

#include <QMoveEvent>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;

namespace {

constexpr NotifyTimes kQuick{20ms, 20ms, 20ms, 40};
constexpr NotifyTimes kStaying{20ms, 1h, 20ms, 40};

/// Where a window's top edge has been.
class Tops : public QObject {
public:
    std::vector<int> seen;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Move) {
            seen.push_back(static_cast<QMoveEvent *>(event)->pos().y());
        }
        return false;
    }
};

} // namespace

class TaskNotifyDlgTest : public ::testing::Test {
protected:
    void SetUp() override { DuiLib::CPaintManagerUI::SetInstance(); }
    void TearDown() override { CTaskNotifyDlg::closeAll(); }

    static CTaskNotifyDlg *make(const QString &name = u"a clip"_s)
    {
        return new CTaskNotifyDlg({u"/videos/"_s, name, u".mp4"_s},
                                  [](const QString &, const QString &) { return QString(); });
    }
    static QRect workArea() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    static bool hasArrived(const CTaskNotifyDlg &popup, int place)
    {
        const int bottom = workArea().bottom() + 1 - place * (popup.height() + 8);
        return popup.y() + popup.height() == bottom;
    }
};

TEST_F(TaskNotifyDlgTest, namesTheFileAsALink)
{
    const std::unique_ptr<CTaskNotifyDlg> popup(make(u"<b>clip"_s));
    EXPECT_EQ(test::control<DuiLib::CTextUI>(*popup, u"textFileName"_s)->markup(),
              u"{a}<b>clip.mp4{/a}"_s);
}

TEST_F(TaskNotifyDlgTest, marksInANameAreOfTheName)
{
    const std::unique_ptr<CTaskNotifyDlg> popup(make(u"a {b}c{/a}"_s));
    popup->showFor(kStaying);
    const auto *name = test::control<DuiLib::CTextUI>(*popup, u"textFileName"_s);
    EXPECT_TRUE(name->text().contains(u"a {b}c{/a}.mp4</a>"_s)) << name->text().toStdString();
}

TEST_F(TaskNotifyDlgTest, aLongNameIsShortenedAndMovesNothing)
{
    const QString longName = QString(60, u'a') + u"_1080p_"_s + QString(160, u'z');
    CTaskNotifyDlg *popup = make(longName);
    const QSize size = popup->size();
    popup->showFor(kQuick);
    EXPECT_EQ(popup->size(), size);
    EXPECT_EQ(popup->x() + popup->width(), workArea().right() + 1);
    for (const auto &button : {u"btnClose"_s, u"btnOpenFolder"_s, u"btnCancel"_s}) {
        const auto *control = test::control(*popup, button);
        EXPECT_TRUE(
            popup->rect().contains(QRect(control->mapTo(popup, QPoint()), control->size())));
    }
    const auto *name = test::control<DuiLib::CTextUI>(*popup, u"textFileName"_s);
    EXPECT_EQ(name->text().count(u"<br>"_s), 1);
    EXPECT_TRUE(name->text().contains(u".mp4"_s));
    EXPECT_EQ(name->toolTip(), longName + u".mp4"_s);
}

TEST_F(TaskNotifyDlgTest, slidesInStaysAndSlidesOutByItself)
{
    const QPointer<CTaskNotifyDlg> popup = make();
    Tops tops;
    popup->showFor(kQuick);
    popup->installEventFilter(&tops);
    EXPECT_EQ(popup->y(), workArea().bottom() + 1);
    EXPECT_EQ(popup->x() + popup->width(), workArea().right() + 1);
    const int height = popup->height();
    test::waitUntil("the popup is gone", [&popup] { return popup.isNull(); });
    EXPECT_EQ(CTaskNotifyDlg::newest(), nullptr);

    const int below = workArea().bottom() + 1;
    std::vector<int> expected;
    for (int top = below - kQuick.step; top > below - height; top -= kQuick.step) {
        expected.push_back(top);
    }
    for (int top = below - height; top < below + kQuick.step; top += kQuick.step) {
        expected.push_back(top);
    }
    EXPECT_EQ(tops.seen, expected);
}

TEST_F(TaskNotifyDlgTest, slidesForEightTenthsOfASecondAndStaysForThree)
{
    CTaskNotifyDlg *popup = make();
    const auto running = [popup] {
        std::vector<std::pair<bool, int>> timers;
        for (const QTimer *timer : popup->findChildren<QTimer *>(Qt::FindDirectChildrenOnly)) {
            if (timer->isActive()) {
                timers.emplace_back(timer->isSingleShot(), timer->interval());
            }
        }
        return timers;
    };
    popup->showFor({});
    const int steps = popup->height() / 4;
    EXPECT_THAT(running(), ElementsAre(Pair(false, 800 / steps)));
    test::waitUntil("it stands", [popup] { return hasArrived(*popup, 0); });
    EXPECT_THAT(running(), ElementsAre(Pair(true, 3'000)));
}

TEST_F(TaskNotifyDlgTest, comesUpFromBehindTheOneBelowIt)
{
    CTaskNotifyDlg *first = make();
    CTaskNotifyDlg *second = make();
    first->showFor(kStaying);
    second->showFor({1h, 1h, 1h, 1});
    test::waitUntil("the first stands", [first] { return hasArrived(*first, 0); });
    EXPECT_FALSE(second->mask().intersects(second->rect()));
    EXPECT_LT(second->y(), first->y());
    second->close();
    first->close();
}

TEST_F(TaskNotifyDlgTest, neverTakesTheFocus)
{
    const CTaskNotifyDlg *popup = make();
    EXPECT_TRUE(popup->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(popup->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    delete popup;
}

TEST_F(TaskNotifyDlgTest, twoStandAboveOneAnotherAndCloseOnTheirOwn)
{
    const QPointer<CTaskNotifyDlg> first = make();
    const QPointer<CTaskNotifyDlg> second = make();
    first->showFor(kStaying);
    second->showFor(kStaying);
    EXPECT_EQ(CTaskNotifyDlg::newest(), second);
    EXPECT_EQ(second->older(), first);
    test::waitUntil("both stand", [&] { return hasArrived(*first, 0) && hasArrived(*second, 1); });
    EXPECT_FALSE(first->geometry().intersects(second->geometry()));
    test::click(*test::control(*first, u"btnClose"_s));
    test::waitUntil("the first is gone", [&first] { return first.isNull(); });
    EXPECT_EQ(CTaskNotifyDlg::newest(), second);
    EXPECT_EQ(second->older(), nullptr);
    CTaskNotifyDlg *third = make();
    third->showFor(kStaying);
    test::waitUntil("the third takes the free place", [third] { return hasArrived(*third, 0); });
}

TEST_F(TaskNotifyDlgTest, staysWhileTheMouseIsOverIt)
{
    const QPointer<CTaskNotifyDlg> popup = make();
    popup->showFor(kStaying);
    test::waitUntil("it stands", [&popup] { return hasArrived(*popup, 0); });
    const auto timers = popup->findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
    const auto isAnyActive = [&timers] {
        return std::any_of(timers.begin(), timers.end(),
                           [](const QTimer *timer) { return timer->isActive(); });
    };
    EXPECT_TRUE(isAnyActive());
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QApplication::sendEvent(popup, &enter);
    EXPECT_FALSE(isAnyActive());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(popup, &leave);
    EXPECT_TRUE(isAnyActive());
}

TEST_F(TaskNotifyDlgTest, whatIsClickedIsAskedForAndClosesIt)
{
    struct Case {
        QString button;
        int play, folder, convert;
    };
    for (const auto &[button, play, folder, convert] :
         {Case{u"textFileName"_s, 1, 0, 0}, Case{u"btnOpenFolder"_s, 0, 1, 0},
          Case{u"btnConvert"_s, 0, 0, 1}, Case{u"btnCancel"_s, 0, 0, 0}}) {
        const QPointer<CTaskNotifyDlg> popup = make(u"with blanks -x"_s);
        QSignalSpy played(popup, &CTaskNotifyDlg::playWanted);
        QSignalSpy opened(popup, &CTaskNotifyDlg::folderWanted);
        QSignalSpy converted(popup, &CTaskNotifyDlg::conversionWanted);
        popup->showFor(kStaying);
        if (auto *text = popup->findChild<DuiLib::CTextUI *>(button)) {
            Q_EMIT text->linkActivated(u"#"_s);
        } else {
            test::click(*test::control(*popup, button));
        }
        EXPECT_EQ(played.count(), play);
        EXPECT_EQ(opened.count(), folder);
        EXPECT_EQ(converted.count(), convert);
        if (play == 1) {
            EXPECT_EQ(played[0][0].toString(), u"/videos/with blanks -x.mp4"_s);
        }
        test::waitUntil("the popup is gone", [&popup] { return popup.isNull(); });
    }
}

TEST_F(TaskNotifyDlgTest, itIsDoneBeforeAnybodyIsToldWhatWasClicked)
{
    const QPointer<CTaskNotifyDlg> popup = make();
    QString told;
    QObject::connect(popup, &CTaskNotifyDlg::conversionWanted, qApp, [&](const QString &path) {
        EXPECT_FALSE(popup->isVisible());
        // As in the event loop of a message box, where the mouse leaves the popup.
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(popup, &leave);
        CTaskNotifyDlg::closeAll();
        told = path;
    });
    popup->showFor(kQuick);
    test::click(*test::control(*popup, u"btnConvert"_s));
    EXPECT_EQ(told, u"/videos/a clip.mp4"_s);
    EXPECT_TRUE(popup.isNull());
}

} // namespace tollivar::ui
