#include "companions/capture/media_kind.h"

#include <gtest/gtest.h>

#include <ostream>

namespace tollivar::capture {
namespace {

struct KindCase {
    const char *name;
    const char16_t *type;
    const char16_t *address;
    MediaKind kind;
};

void PrintTo(const KindCase &row, std::ostream *out)
{
    *out << row.name;
}

class KindOf : public ::testing::TestWithParam<KindCase> {};

TEST_P(KindOf, isAsTheTableSays)
{
    EXPECT_EQ(kindOf(QString::fromUtf16(GetParam().type), QString::fromUtf16(GetParam().address)),
              GetParam().kind);
}

constexpr std::array kCases = {
    KindCase{"plainVideo", u"video/mp4", u"http://h/x", MediaKind::Video},
    KindCase{"typeWithParameters", u"Video/MP4; codecs=\"avc1\"", u"http://h/x", MediaKind::Video},
    KindCase{"unknownVideoType", u"video/x-new", u"http://h/x", MediaKind::Video},
    KindCase{"sound", u"audio/mpeg", u"http://h/x.mp4", MediaKind::Audio},
    KindCase{"flash", u"application/x-shockwave-flash", u"http://h/x", MediaKind::Flash},
    KindCase{"bytesNamedVideo", u"application/octet-stream", u"http://h/x.FLV?t=1",
             MediaKind::Video},
    KindCase{"nothingNamedVideo", u"", u"http://h/x.webm#t=1", MediaKind::Video},
    KindCase{"textNamedVideo", u"text/plain", u"http://h/x.mp4", MediaKind::Video},
    KindCase{"nothingNamedSound", u"", u"http://h/x.m4a", MediaKind::Audio},
    KindCase{"nothingNamedFlash", u"", u"http://h/x.swf", MediaKind::Flash},
    KindCase{"bytesOfNoName", u"application/octet-stream", u"http://h/x", MediaKind::None},
    KindCase{"pageNamedVideo", u"text/html", u"http://h/x.mp4", MediaKind::None},
    KindCase{"imageNamedVideo", u"image/gif", u"http://h/x.mp4", MediaKind::None},
    KindCase{"image", u"image/png", u"http://h/x.png", MediaKind::None},
    KindCase{"json", u"application/json", u"http://h/clip.mp4", MediaKind::None},
    KindCase{"endingInTheQueryOnly", u"", u"http://h/x?f=a.mp4", MediaKind::None},
    KindCase{"playlist", u"application/vnd.apple.mpegurl", u"http://h/x", MediaKind::Playlist},
    KindCase{"playlistByName", u"", u"http://h/x.m3u8", MediaKind::Playlist},
    KindCase{"manifest", u"application/dash+xml", u"http://h/x.mpd", MediaKind::Playlist},
    KindCase{"segment", u"video/mp2t", u"http://h/1", MediaKind::Segment},
    KindCase{"segmentByName", u"video/mp4", u"http://h/1.m4s", MediaKind::Segment},
    KindCase{"soundSegment", u"audio/mp4", u"http://h/1.m4s", MediaKind::Segment},
    KindCase{"mp4AsApplication", u"application/mp4", u"http://h/x", MediaKind::Video},
    KindCase{"nothingAtAll", u"", u"", MediaKind::None},
    KindCase{"brokenType", u";;/", u"http://[bad", MediaKind::None},
};

INSTANTIATE_TEST_SUITE_P(Table, KindOf, ::testing::ValuesIn(kCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(MediaKind, oneRequestBringsVideosFlashAndSoundsOnly)
{
    EXPECT_TRUE(isMedium(MediaKind::Video));
    EXPECT_TRUE(isMedium(MediaKind::Flash));
    EXPECT_TRUE(isMedium(MediaKind::Audio));
    EXPECT_FALSE(isMedium(MediaKind::Playlist));
    EXPECT_FALSE(isMedium(MediaKind::Segment));
    EXPECT_FALSE(isMedium(MediaKind::None));
}

} // namespace
} // namespace tollivar::capture
