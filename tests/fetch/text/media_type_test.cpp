#include "fetch/text/media_type.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

TEST(MediaType, givesTheEndingWhateverCaseAndParameters)
{
    EXPECT_EQ(typeForMedia("video/mp4"), QStringLiteral(".mp4"));
    EXPECT_EQ(typeForMedia("Video/WebM; codecs=\"vp9\""), QStringLiteral(".webm"));
    EXPECT_EQ(typeForMedia("application/x-shockwave-flash"), QStringLiteral(".swf"));
}

TEST(MediaType, whatIsNoMediaHasNoEnding)
{
    EXPECT_EQ(typeForMedia("text/html"), QString());
    EXPECT_EQ(typeForMedia("application/octet-stream"), QString());
    EXPECT_EQ(typeForMedia(""), QString());
}

} // namespace
} // namespace tollivar::fetch
