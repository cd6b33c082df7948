#include "tests/app/window/program_on_desktop.h"

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

/// The add-task dialog under a window manager, which moves windows about while it takes them over.
class AddTaskOnDesktop : public ProgramOnDesktop {
protected:
    void open(const QString &window)
    {
        m_desktop.press(window, u"ctrl+n"_s);
        m_dialog = m_desktop.waitForWindow(kAddTask);
        waitUntilActive(m_dialog);
        m_place = m_desktop.place(m_dialog);
    }
    /// Presses "More>>" or "Less<<".
    void clickMore() const
    {
        const QPoint corner = m_desktop.place(m_dialog).bottomLeft();
        m_desktop.act({u"mousemove"_s, QString::number(corner.x() + 60),
                       QString::number(corner.y() - 30), u"click"_s, u"1"_s});
    }
    void expectHeight(int height) const
    {
        test::waitUntil("the height", [&] { return m_desktop.place(m_dialog).height() == height; });
        const QRect place = m_desktop.place(m_dialog);
        EXPECT_EQ(place.topLeft(), m_place.topLeft());
        EXPECT_EQ(place.width(), m_place.width());
    }

    QString m_dialog;
    QRect m_place;
};

TEST_F(AddTaskOnDesktop, moreAndLessLeaveTheDialogWhereItIs)
{
    constexpr int kTimes = 4;
    constexpr int kMore = 452;
    const QString window = start();
    waitUntilActive(window);
    for (int time = 0; time < kTimes; ++time) {
        open(window);
        const int less = m_place.height();
        clickMore();
        expectHeight(kMore);
        clickMore();
        expectHeight(less);
        m_desktop.close(m_dialog);
        waitUntilGone(kAddTask);
    }
    end();
}

TEST_F(AddTaskOnDesktop, aRefusalStandsOverTheDialog)
{
    const QString window = start();
    waitUntilActive(window);
    for (int time = 0; time < 3; ++time) {
        open(window);
        const QPoint corner = m_place.bottomRight();
        m_desktop.act({u"mousemove"_s, QString::number(corner.x() - 70),
                       QString::number(corner.y() - 30), u"click"_s, u"1"_s});
        test::waitUntil("the refusal", [&] {
            return !m_desktop.active().isEmpty() && m_desktop.active() != m_dialog;
        });
        const QRect box = m_desktop.place(m_desktop.active());
        EXPECT_LT((box.center() - m_place.center()).manhattanLength(), 60);
        m_desktop.act({u"key"_s, u"Return"_s});
        waitUntilActive(m_dialog);
        m_desktop.close(m_dialog);
        waitUntilGone(kAddTask);
    }
    end();
}

TEST_F(AddTaskOnDesktop, theQualityOfTheVideoSiteLeavesItWhereItIs)
{
    const QString window = start();
    waitUntilActive(window);
    open(window);
    m_desktop.act({u"type"_s, u"http://www.youtube.com/watch?v=x"_s});
    clickMore();
    expectHeight(452);
    end();
}

} // namespace
} // namespace tollivar::app
