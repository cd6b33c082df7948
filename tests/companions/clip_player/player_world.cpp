#include "tests/companions/clip_player/player_world.h"

#include "companions/clip_player/message_page.h"
#include "companions/clip_player/picture_view.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"

#include <QLabel>

#include <cstdlib>

namespace tollivar::player {

using namespace Qt::StringLiterals;

namespace {

void runFfmpeg(const QStringList &arguments, const QString &path)
{
    test::runToEnd(QStringList{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s} +
                   arguments + QStringList{u"file:"_s + path});
}

bool isLike(const QColor &one, const QColor &other)
{
    constexpr int kTolerance = 24;
    return std::abs(one.red() - other.red()) < kTolerance &&
           std::abs(one.green() - other.green()) < kTolerance &&
           std::abs(one.blue() - other.blue()) < kTolerance;
}

} // namespace

PlayerWorld::PlayerWorld()
{
    auto core = createCore();
    if (!core) {
        ADD_FAILURE() << qPrintable(core.error().text);
        std::abort();
    }
    m_player = std::make_unique<MediaPlayer>(std::move(*core));
    m_window = std::make_unique<PlayerWindow>(*m_player);
    m_window->show();
    m_window->activateWindow();
    test::waitUntil("the window is active", [this] { return m_window->isActiveWindow(); });
}

PlayerWorld::~PlayerWorld() = default;

QString PlayerWorld::makeClip(const QString &name, const QStringList &options) const
{
    const QString path = m_sandbox.file(name);
    runFfmpeg(QStringList{u"-f"_s, u"lavfi"_s, u"-i"_s,
                          u"color=c=0x00c040:size=96x64:rate=25:duration=4"_s, u"-f"_s, u"lavfi"_s,
                          u"-i"_s, u"sine=duration=4:sample_rate=44100"_s} +
                  options,
              path);
    return path;
}

QString PlayerWorld::makeSound(const QString &name) const
{
    const QString path = m_sandbox.file(name);
    runFfmpeg({u"-f"_s, u"lavfi"_s, u"-i"_s, u"sine=duration=4:sample_rate=44100"_s}, path);
    return path;
}

void PlayerWorld::play(const QString &path)
{
    m_window->open(path);
    test::waitUntil("the file plays", [&] {
        return state().status == PlayerStatus::Loaded && state().path == path && state().hasDecoded;
    });
}

QString PlayerWorld::refusal(const QString &path)
{
    m_window->open(path);
    test::waitUntil("the window says why", [this] {
        return state().status == PlayerStatus::Empty || state().status == PlayerStatus::Failed;
    });
    return sentence();
}

QString PlayerWorld::sentence() const
{
    const auto *page = m_window->findChild<MessagePage *>();
    return page->isVisible() ? page->findChild<QLabel *>(u"sentence"_s)->text() : QString();
}

void PlayerWorld::waitForColor(const QColor &color)
{
    auto *view = m_window->findChild<PictureView *>();
    QColor seen;
    const bool isSeen = test::waitUntil("the colour is drawn", [&] {
        const QImage image = view->grab().toImage();
        seen = image.pixelColor(image.rect().center());
        return isLike(seen, color);
    });
    EXPECT_TRUE(isSeen) << seen.name().toStdString();
}

} // namespace tollivar::player
