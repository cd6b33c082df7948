#include "companions/clip_player/local_file.h"

#include <gtest/gtest.h>

namespace tollivar::player {

using namespace Qt::StringLiterals;

TEST(ListOfFiles, isKnownByItsBeginningWhateverItsName)
{
    for (const QByteArray &beginning :
         {QByteArray("#EXTM3U\nb.mp4\n"), QByteArray("\xEF\xBB\xBF#extm3u\n"),
          QByteArray("\r\n  [playlist]\nFile1=b.mp4"), QByteArray("[Reference]\nRef1=http://a/b"),
          QByteArray("<ASX version=\"3.0\">"), QByteArray("<?xml version=\"1.0\"?>\n<MPD>"),
          QByteArray("<?xml version=\"1.0\"?>\n<playlist>"), QByteArray("<?wpl version=\"1.0\"?>"),
          QByteArray("# mpv EDL v0\nb.mp4"), QByteArray("ffconcat version 1.0\nfile 'b.mp4'"),
          QByteArray("v=0\r\no=- 0 0 IN IP4 127.0.0.1"), QByteArray("RTSPtextrtsp://a/b")}) {
        EXPECT_TRUE(isListOfFiles(beginning, u"mp4"_s)) << beginning.constData();
    }
}

TEST(ListOfFiles, isKnownByItsEndingWhateverItsBeginning)
{
    for (const QString &ending : {u"m3u"_s, u"M3U8"_s, u"pls"_s, u"cue"_s, u"sdp"_s}) {
        EXPECT_TRUE(isListOfFiles("b.mp4\n", ending)) << ending.toStdString();
    }
}

TEST(ListOfFiles, mediaAndOtherTextIsNone)
{
    EXPECT_FALSE(isListOfFiles({}, {}));
    EXPECT_FALSE(isListOfFiles("FLV\1\5", u"flv"_s));
    EXPECT_FALSE(isListOfFiles("\x1A\x45\xDF\xA3", u"webm"_s));
    EXPECT_FALSE(isListOfFiles(QByteArray(20'000, ' '), u"mp4"_s));
    EXPECT_FALSE(isListOfFiles("<?xml", u"mp4"_s));
    EXPECT_FALSE(isListOfFiles("playlist", u"txt"_s));
}

TEST(ShownName, isOneShortLineWithoutTricks)
{
    EXPECT_EQ(shownName(u"/a/b/clip.mp4"_s), u"clip.mp4"_s);
    EXPECT_EQ(shownName(u"/a/two\nlines\t.mp4"_s), u"two lines .mp4"_s);
    EXPECT_EQ(shownName(u"/a/\u202Egpj.exe"_s), u"gpj.exe"_s);
    EXPECT_EQ(shownName(u"/a/Видео 動画 🎬.mp4"_s), u"Видео 動画 🎬.mp4"_s);
    EXPECT_EQ(shownName(u"/a/"_s + QString(300, u'x')).size(), 81);
    EXPECT_EQ(shownName({}), QString());
}

} // namespace tollivar::player
