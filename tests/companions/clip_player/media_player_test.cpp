#include "tests/companions/clip_player/player_world.h"
#include "tests/support/wait_until.h"

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;

const QColor kGreen(0x00, 0xC0, 0x40);

class MediaPlayerTest : public PlayerWorld {};

TEST_F(MediaPlayerTest, playsEveryFormatThatIsDownloadedOrConvertedTo)
{
    const QList<std::pair<QString, QStringList>> formats = {
        {u"a.flv"_s, {u"-ar"_s, u"44100"_s}},
        {u"a.mp4"_s, {u"-pix_fmt"_s, u"yuv420p"_s}},
        {u"a.webm"_s, {u"-c:v"_s, u"libvpx"_s, u"-c:a"_s, u"libvorbis"_s}},
        {u"a.wmv"_s, {}},
        {u"a.avi"_s, {}},
        {u"a.mkv"_s, {u"-c:v"_s, u"mpeg4"_s}},
        {u"a.mpg"_s, {}}};
    for (const auto &[name, options] : formats) {
        SCOPED_TRACE(name.toStdString());
        play(makeClip(name, options));
        EXPECT_TRUE(state().hasPicture);
        EXPECT_NEAR(state().duration.value_or(0), 4, 0.5);
        waitForColor(kGreen);
        EXPECT_EQ(sentence(), QString());
    }
}

TEST_F(MediaPlayerTest, playsSoundAloneUnderItsName)
{
    play(makeSound(u"tone.mp3"_s));
    EXPECT_FALSE(state().hasPicture);
    EXPECT_NEAR(state().duration.value_or(0), 4, 0.5);
    EXPECT_EQ(sentence(), u"tone.mp3"_s);
}

TEST_F(MediaPlayerTest, goesOnByItselfAndStandsStillWhilePaused)
{
    play(makeClip(u"a.mp4"_s));
    const double first = state().position.value_or(0);
    waitUntil("it goes on", [&] { return state().position.value_or(0) > first + 0.2; });
    player().togglePlaying();
    waitUntil("it is paused", [&] { return state().isPaused; });
    player().seekTo(1);
    waitUntil("it went there", [&] { return std::abs(state().position.value_or(0) - 1) < 0.1; });
    const double paused = state().position.value_or(0);
    // Whatever the core still had to say about the position comes before its answer to this.
    player().setVolume(33);
    waitUntil("the volume changed", [&] { return qRound(state().volume) == 33; });
    EXPECT_DOUBLE_EQ(state().position.value_or(0), paused);
    player().togglePlaying();
    waitUntil("it goes on", [&] { return state().position.value_or(0) > paused + 0.2; });
}

TEST_F(MediaPlayerTest, seeksToATimeAndByAStepButNeverOutOfTheFile)
{
    play(makeClip(u"a.mp4"_s));
    player().togglePlaying();
    player().seekTo(2.5);
    waitUntil("2.5 s", [&] { return std::abs(state().position.value_or(0) - 2.5) < 0.1; });
    player().seekBy(-1);
    waitUntil("1.5 s", [&] { return std::abs(state().position.value_or(0) - 1.5) < 0.1; });
    player().seekBy(-100);
    waitUntil("0 s", [&] { return state().position.value_or(1) < 0.1; });
    player().seekTo(1e9);
    waitUntil("the last picture", [&] { return state().position.value_or(0) > 3.5; });
    EXPECT_LT(state().position.value_or(9), 4.5);
}

TEST_F(MediaPlayerTest, atItsEndItStaysAndPlaysAgainFromTheBeginning)
{
    play(makeClip(u"a.mp4"_s));
    player().seekTo(3.8);
    waitUntil("the end", [&] { return state().hasEnded; });
    EXPECT_FALSE(state().isPlaying());
    EXPECT_EQ(state().status, PlayerStatus::Loaded);
    waitForColor(kGreen);
    player().togglePlaying();
    waitUntil("it plays again",
              [&] { return state().isPlaying() && state().position.value_or(9) < 2; });
}

TEST_F(MediaPlayerTest, theVolumeStaysBetweenSilenceAndFull)
{
    player().changeVolume(50);
    player().changeVolume(-30);
    waitUntil("70 %", [&] { return qRound(state().volume) == 70; });
    player().changeVolume(-500);
    waitUntil("silence", [&] { return qRound(state().volume) == 0; });
    player().setVolume(100);
    player().toggleMuted();
    waitUntil("muted", [&] { return state().isMuted && qRound(state().volume) == 100; });
}

TEST_F(MediaPlayerTest, aFileTakesThePlaceOfTheOneThatPlays)
{
    play(makeClip(u"first.mp4"_s));
    player().togglePlaying();
    const QString second = makeClip(u"second.avi"_s, {u"-vf"_s, u"negate"_s});
    play(second);
    EXPECT_FALSE(state().isPaused);
    waitForColor(QColor(0xFF, 0x3F, 0xBF));
}

TEST_F(MediaPlayerTest, itCanBeEndedAtAnyMoment)
{
    const QString clip = makeClip(u"a.mp4"_s);
    for (int round = 0; round < 10; ++round) {
        auto core = createCore();
        ASSERT_TRUE(core);
        MediaPlayer other(std::move(*core));
        other.pictures().setSize({64 + round, 48});
        other.open(clip);
        if (round % 2 == 0) {
            waitUntil("it plays", [&] { return other.state().status == PlayerStatus::Loaded; });
        }
    }
}

} // namespace
} // namespace tollivar::player
