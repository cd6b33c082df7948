#include "tests/companions/clip_player/player_world.h"
#include "tests/support/http_site.h"
#include "tests/support/wait_until.h"

#include <QFile>

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;

class HostileFiles : public PlayerWorld {
protected:
    /// What the core itself makes of a file that the window's own look at it would have refused.
    PlayerStatus openBehindTheWindow(const QString &path)
    {
        player().open(path);
        waitUntil("the core has judged it", [&] {
            return state().status == PlayerStatus::Failed || state().status == PlayerStatus::Loaded;
        });
        return state().status;
    }
};

TEST_F(HostileFiles, namesOfEveryKindPlay)
{
    const QString clip = makeClip(u"clip.mp4"_s);
    for (const QString &name :
         {u"-v"_s, u"--script=x.lua"_s, u"100%d %n.mp4"_s, u"a \"b\" 'c'.mp4"_s,
          u"two\nlines.mp4"_s, u"Видео 動画 🎬.mp4"_s, u"${path};$(x)`y`.mp4"_s, u"http:"_s,
          u"edl:a,b.mp4"_s, u"back\\slash.mp4"_s, u"a|b.mp4"_s}) {
        SCOPED_TRACE(name.toStdString());
        const QString path = sandbox().file(name);
        ASSERT_TRUE(QFile::copy(clip, path));
        play(path);
        EXPECT_TRUE(state().hasPicture);
    }
}

TEST_F(HostileFiles, aListOfFilesIsRefusedInASentence)
{
    static_cast<void>(makeClip(u"other.mp4"_s));
    EXPECT_EQ(refusal(sandbox().write(u"list.m3u"_s, "#EXTM3U\nother.mp4\n")),
              u"“list.m3u” only names other files; open one of those."_s);
    EXPECT_EQ(refusal(u"http://127.0.0.1/a.mp4"_s),
              u"Only files on this computer can be played, not addresses."_s);
}

TEST_F(HostileFiles, theCoreItselfOpensNoOtherFileAndNoConnection)
{
    static_cast<void>(makeClip(u"other.mp4"_s, {u"-pix_fmt"_s, u"yuv420p"_s}));
    static_cast<void>(makeClip(u"other.ts"_s));
    test::HttpSite site;
    const QByteArray address = site.address("/other.ts").toLatin1();
    const QByteArray media = "#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n";
    const std::pair<QString, QByteArray> lists[] = {
        {u"a.m3u"_s, "#EXTM3U\nother.mp4\n" + address + '\n'},
        {u"b.m3u8"_s, "#EXTM3U\n" + media + "other.ts\n#EXT-X-ENDLIST\n"},
        {u"c.mp4"_s, "#EXTM3U\n" + media + address + "\n#EXT-X-ENDLIST\n"},
        {u"d.pls"_s, "[playlist]\nFile1=" + address + "\nNumberOfEntries=1\n"},
        {u"e.mp4"_s, "# mpv EDL v0\nother.mp4\n"},
        {u"f.mp4"_s, "ffconcat version 1.0\nfile 'other.mp4'\n"},
        {u"g.cue"_s, "FILE \"other.mp4\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"},
        {u"h.sdp"_s, "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\n"
                     "m=video 5004 RTP/AVP 96\na=rtpmap:96 H264/90000\n"},
        {u"i.mpd"_s, "<?xml version=\"1.0\"?>\n<MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" "
                     "type=\"static\"><Period><AdaptationSet mimeType=\"video/mp4\">"
                     "<Representation id=\"1\"><BaseURL>" +
                         address + "</BaseURL></Representation></AdaptationSet></Period></MPD>"},
        {u"j.asx"_s, "<ASX version=\"3.0\"><ENTRY><REF HREF=\"" + address + "\"/></ENTRY></ASX>"}};
    for (const auto &[name, text] : lists) {
        EXPECT_EQ(openBehindTheWindow(sandbox().write(name, text)), PlayerStatus::Failed)
            << name.toStdString();
    }
    EXPECT_TRUE(site.requests().empty());
}

TEST_F(HostileFiles, filesBesideItAreLeftAlone)
{
    const QString clip = makeClip(u"a.mp4"_s);
    sandbox().write(u"a.srt"_s, "1\n00:00:00,000 --> 00:00:04,000\nwords\n");
    sandbox().write(u"a.mp4.conf"_s, "volume=3\n");
    static_cast<void>(makeSound(u"a.mp3"_s));
    play(clip);
    waitForColor(QColor(0x00, 0xC0, 0x40));
    EXPECT_EQ(qRound(state().volume), 100);
}

TEST_F(HostileFiles, whatIsNoMediaIsToldInASentence)
{
    EXPECT_EQ(refusal(sandbox().write(u"text.mp4"_s, "just some words\n")),
              u"“text.mp4” cannot be played: it is damaged, or of an unknown kind."_s);
    EXPECT_EQ(refusal(sandbox().write(u"noise.flv"_s, QByteArray("FLV\1\5\0\0\0\x9", 9))),
              u"“noise.flv” cannot be played: it is damaged, or of an unknown kind."_s);
    EXPECT_EQ(refusal(sandbox().write(u"bold<b>.avi"_s, QByteArray(5'000, '\xA5'))),
              u"“bold<b>.avi” cannot be played: it is damaged, or of an unknown kind."_s);
}

TEST_F(HostileFiles, aFileThatNothingComesOutOfIsToldInASentence)
{
    QFile file(makeClip(u"body.mp4"_s, {u"-an"_s, u"-movflags"_s, u"+faststart"_s}));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray bytes = file.readAll();
    const qsizetype body = bytes.indexOf("mdat") + 4;
    bytes.replace(body, bytes.size() - body, QByteArray(bytes.size() - body, '\xA5'));
    EXPECT_EQ(refusal(sandbox().write(u"body.mp4"_s, bytes)),
              u"“body.mp4” cannot be played: it is damaged, or of an unknown kind."_s);
}

TEST_F(HostileFiles, afterASentenceTheNextFilePlays)
{
    const QString clip = makeClip(u"a.mp4"_s);
    static_cast<void>(refusal(sandbox().write(u"text.mp4"_s, "just some words\n")));
    play(clip);
    EXPECT_EQ(sentence(), QString());
    static_cast<void>(refusal(sandbox().file(u"gone.mp4"_s)));
    EXPECT_EQ(sentence(), u"“gone.mp4” does not exist."_s);
    play(clip);
    EXPECT_EQ(sentence(), QString());
}

TEST_F(HostileFiles, aFileCutAnywhereOrWithFlippedBytesPlaysOrIsRefused)
{
    for (const QString &name : {u"a.mp4"_s, u"a.flv"_s, u"a.avi"_s}) {
        QFile file(makeClip(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        for (int part = 1; part < 6; ++part) {
            const QByteArray cut = whole.first(whole.size() * part / 6);
            openBehindTheWindow(sandbox().write(u"cut-"_s + name, cut));
            QByteArray flipped = whole;
            for (qsizetype place = part; place < flipped.size(); place += 97) {
                flipped[place] = static_cast<char>(flipped[place] ^ 0x55);
            }
            openBehindTheWindow(sandbox().write(u"flipped-"_s + name, flipped));
        }
    }
}

} // namespace
} // namespace tollivar::player
