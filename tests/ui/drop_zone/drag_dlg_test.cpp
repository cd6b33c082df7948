#include "tests/support/wait_until.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/drop_zone/drop_hint.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QScreen>
#include <QUrl>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

const QString kWatchPage = u"http://www.youtube.com/watch?v=abc"_s;

/// Something copied that counts how often anybody looks at it.
class WatchedText final : public QMimeData {
public:
    explicit WatchedText(int &looks) : m_looks(looks) {}

    [[nodiscard]] bool hasFormat(const QString &type) const override
    {
        ++m_looks;
        return type == "text/plain"_L1;
    }
    [[nodiscard]] QStringList formats() const override
    {
        ++m_looks;
        return {u"text/plain"_s};
    }

protected:
    [[nodiscard]] QVariant retrieveData(const QString & /*type*/,
                                        QMetaType /*wanted*/) const override
    {
        ++m_looks;
        return kWatchPage;
    }

private:
    int &m_looks;
};

} // namespace

class DragDlgTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DuiLib::CPaintManagerUI::SetInstance();
        m_zone = std::make_unique<CDragDlg>(m_inbox.port(), [](const QString &id) { return id; });
        m_zone->show();
    }

    /// True when the zone would take it.
    bool hover(const QMimeData &data)
    {
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_zone.get(), &enter);
        return enter.isAccepted();
    }
    void leave()
    {
        QDragLeaveEvent event;
        QApplication::sendEvent(m_zone.get(), &event);
    }
    bool drop(const QMimeData &data)
    {
        if (!hover(data)) {
            return false;
        }
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_zone.get(), &drop);
        return drop.isAccepted();
    }

    [[nodiscard]] const QLabel &hint() const { return *m_zone->findChild<QLabel *>(u"dropHint"_s); }

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

TEST_F(DragDlgTest, addressesThatAreNoPlainTextAreRefused)
{
    QMimeData addresses;
    addresses.setUrls({QUrl(kWatchPage)});
    EXPECT_FALSE(drop(addresses));
    EXPECT_TRUE(announced().empty());
    addresses.setData(u"text/plain;charset=utf-8"_s, kWatchPage.toUtf8());
    EXPECT_TRUE(drop(addresses));
    EXPECT_EQ(m_zone->receivedText(), kWatchPage);
}

TEST_F(DragDlgTest, saysWhatItWillDoWhileTextHovers)
{
    QMimeData text;
    text.setText(kWatchPage);
    EXPECT_FALSE(hint().isVisible());
    const QImage before = m_zone->grab().toImage();
    EXPECT_TRUE(hover(text));
    EXPECT_TRUE(hint().isVisible());
    EXPECT_EQ(hint().text(), u"strDropHint"_s);
    EXPECT_FALSE(hint().geometry().intersects(m_zone->geometry()));
    EXPECT_TRUE(m_zone->screen()->availableGeometry().contains(hint().geometry()));
    EXPECT_NE(m_zone->grab().toImage(), before);
    leave();
    EXPECT_FALSE(hint().isVisible());
    EXPECT_EQ(m_zone->grab().toImage(), before);
    EXPECT_TRUE(drop(text));
    EXPECT_FALSE(hint().isVisible());
}

TEST_F(DragDlgTest, promisesNothingWhileAFileHovers)
{
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/tmp/x.flv"_s)});
    const QImage before = m_zone->grab().toImage();
    EXPECT_FALSE(hover(file));
    EXPECT_FALSE(hint().isVisible());
    EXPECT_EQ(m_zone->grab().toImage(), before);
}

TEST_F(DragDlgTest, itsRingFillsClockwiseAndGoesWhenNothingRuns)
{
    const auto brightness = [this](QPoint place) {
        const QImage image = m_zone->grab().toImage();
        return qGray(image.pixel(place * image.devicePixelRatio()));
    };
    // In the middle of the ring's line, at three and at nine o'clock.
    const QPoint right(m_zone->width() - 7, m_zone->height() / 2);
    const QPoint left(7, m_zone->height() / 2);
    const QImage without = m_zone->grab().toImage();
    const int ground = brightness(right);
    m_zone->setProgress(0.0);
    const int track = brightness(right);
    EXPECT_GT(track, ground);
    m_zone->setProgress(0.5);
    EXPECT_GT(brightness(right), track);
    EXPECT_EQ(brightness(left), track);
    m_zone->setProgress(7.0);
    EXPECT_GT(brightness(left), track);
    m_zone->setProgress(std::nullopt);
    EXPECT_EQ(m_zone->grab().toImage(), without);
}

TEST_F(DragDlgTest, isDraggedAndClickedThroughItsRing)
{
    m_zone->setProgress(0.5);
    const QPoint onRing(m_zone->width() - 7, m_zone->height() / 2);
    EXPECT_EQ(m_zone->hitTestAt(onRing).kind, HitArea::Kind::Caption);
    EXPECT_NE(m_zone->childAt(onRing), m_zone->findChild<QWidget *>(u"ringTotal"_s));
    QMimeData text;
    text.setText(kWatchPage);
    EXPECT_TRUE(drop(text));
}

TEST(PlaceBeside, isBelowOrElseAboveAndAlwaysOnTheScreen)
{
    const QRect area(0, 0, 1'000, 800);
    constexpr QSize kSize(200, 30);
    EXPECT_EQ(placeBeside({400, 100, 64, 64}, kSize, area), QPoint(331, 170));
    EXPECT_EQ(placeBeside({400, 730, 64, 64}, kSize, area), QPoint(331, 694));
    EXPECT_EQ(placeBeside({0, 100, 64, 64}, kSize, area), QPoint(0, 170));
    EXPECT_EQ(placeBeside({936, 100, 64, 64}, kSize, area), QPoint(800, 170));
    // The last place that leaves room below, and the first that does not.
    EXPECT_EQ(placeBeside({400, 700, 64, 64}, kSize, area).y(), 770);
    EXPECT_EQ(placeBeside({400, 701, 64, 64}, kSize, area).y(), 665);
    // Wider than the screen: its beginning is what must be seen.
    EXPECT_EQ(placeBeside({400, 100, 64, 64}, {1'200, 30}, area).x(), 0);
}

TEST_F(DragDlgTest, aCopiedWatchPageIsAnnouncedByItsFirstLine)
{
    m_zone->setMonitoring(true);
    QGuiApplication::clipboard()->setText(kWatchPage + u"\r\nsecond line"_s);
    test::waitUntil("the announcement", [this] { return !announced().empty(); });
    EXPECT_EQ(announced(), (std::vector<std::uint64_t>{1}));
    EXPECT_EQ(m_zone->receivedText(), kWatchPage);
}

TEST_F(DragDlgTest, withMonitoringOffTheClipboardIsNotLookedAt)
{
    // The clipboard deletes what the next takes the place of.
    int looks = 0;
    m_zone->setMonitoring(false);
    QGuiApplication::clipboard()->setMimeData(std::make_unique<WatchedText>(looks).release());
    QApplication::processEvents();
    EXPECT_EQ(looks, 0);
    EXPECT_TRUE(announced().empty());
    EXPECT_EQ(m_zone->receivedText(), QString());
    m_zone->setMonitoring(true);
    EXPECT_EQ(looks, 0);
    QGuiApplication::clipboard()->setMimeData(std::make_unique<WatchedText>(looks).release());
    test::waitUntil("the announcement", [this] { return !announced().empty(); });
    EXPECT_GT(looks, 0);
    EXPECT_EQ(m_zone->receivedText(), kWatchPage);
    QGuiApplication::clipboard()->clear();
}

TEST_F(DragDlgTest, copiedPicturesAndAddressesOfOtherSitesAreNotAnnounced)
{
    m_zone->setMonitoring(true);
    auto picture = std::make_unique<QMimeData>();
    picture->setData(u"image/png"_s, "x");
    QGuiApplication::clipboard()->setMimeData(picture.release());
    QGuiApplication::clipboard()->setText(u"http://other.example/watch?v=abc"_s);
    QGuiApplication::clipboard()->clear();
    QApplication::processEvents();
    EXPECT_TRUE(announced().empty());
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
