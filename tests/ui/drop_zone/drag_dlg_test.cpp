#include "tests/support/wait_until.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

const QString kWatchPage = u"http://www.youtube.com/watch?v=abc"_s;

} // namespace

class DragDlgTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DuiLib::CPaintManagerUI::SetInstance();
        m_zone = std::make_unique<CDragDlg>(m_inbox.port());
        m_zone->show();
    }

    bool drop(const QMimeData &data)
    {
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_zone.get(), &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_zone.get(), &drop);
        return drop.isAccepted();
    }

    /// The first values of the announcements so far.
    std::vector<std::uint64_t> announced()
    {
        m_inbox.drain();
        return m_announced;
    }

    std::vector<std::uint64_t> m_announced;
    platform::AppMessageInbox m_inbox{[this](const platform::AppMessage &message) {
        EXPECT_EQ(message.id, platform::AppMessageId::AddressReady);
        m_announced.push_back(message.first);
    }};
    std::unique_ptr<CDragDlg> m_zone;
};

TEST_F(DragDlgTest, anyDroppedTextIsAnnounced)
{
    QMimeData text;
    text.setText(u"not even an address"_s);
    EXPECT_TRUE(drop(text));
    EXPECT_EQ(m_zone->receivedText(), u"not even an address"_s);
    EXPECT_EQ(announced(), (std::vector<std::uint64_t>{0}));
}

TEST_F(DragDlgTest, aDroppedFileIsRefused)
{
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/tmp/x.flv"_s)});
    file.setText(u"/tmp/x.flv"_s);
    EXPECT_FALSE(drop(file));
    QMimeData image;
    image.setData(u"image/png"_s, "x");
    EXPECT_FALSE(drop(image));
    EXPECT_TRUE(announced().empty());
}

TEST_F(DragDlgTest, aCopiedWatchPageIsAnnouncedByItsFirstLine)
{
    m_zone->setMonitoring(true);
    QGuiApplication::clipboard()->setText(kWatchPage + u"\r\nsecond line"_s);
    test::waitUntil("the announcement", [this] { return !announced().empty(); });
    EXPECT_EQ(announced(), (std::vector<std::uint64_t>{1}));
    EXPECT_EQ(m_zone->receivedText(), kWatchPage);
}

TEST_F(DragDlgTest, withMonitoringOffNothingIsAnnounced)
{
    m_zone->setMonitoring(false);
    QGuiApplication::clipboard()->setText(kWatchPage + u"1"_s);
    QApplication::sendPostedEvents();
    EXPECT_TRUE(announced().empty());
    EXPECT_EQ(m_zone->receivedText(), QString());
}

TEST(WatchPageIn, isOnlyAWatchPageWithAVideoOnTheFirstLine)
{
    EXPECT_EQ(watchPageIn(kWatchPage), kWatchPage);
    EXPECT_EQ(watchPageIn(kWatchPage + u"\nx"_s), kWatchPage);
    EXPECT_EQ(watchPageIn(u"\n"_s + kWatchPage), QString());
    EXPECT_EQ(watchPageIn(u"http://www.youtube.com/watch?v="_s), QString());
    EXPECT_EQ(watchPageIn(u"http://other.example/watch?v=abc"_s), QString());
    EXPECT_EQ(watchPageIn({}), QString());
}

TEST_F(DragDlgTest, aMoveRightBeforeTheEndIsTold)
{
    QPoint told;
    QObject::connect(m_zone.get(), &CDragDlg::moveEnded, [&told](QPoint place) { told = place; });
    m_zone->move(123, 45);
    QApplication::processEvents();
    m_zone->hide();
    EXPECT_EQ(told, QPoint(123, 45));
}

} // namespace tollivar::ui
