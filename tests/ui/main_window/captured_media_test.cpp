#include "platform/build_config.h"
#include "ui/main_window/captured_media.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

QString broadcasterPage()
{
    return u"http://WWW."_s + QString(platform::build::kBroadcasterDomains[1]).toUpper() +
           u"/video"_s;
}

} // namespace

TEST(CapturedMedia, isKeptInAFolderNamedAfterItsTitle)
{
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"News"_s, u"http://a/"_s), u"/v/News/"_s);
    EXPECT_EQ(folderOfCaptured(u"/v/"_s, u"ab/c"_s, u"http://a/"_s), u"/v/ab-c/"_s);
}

TEST(CapturedMedia, losesTheNumberBeforeItsTitleOnABroadcastersSiteOnly)
{
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"123-News"_s, broadcasterPage()), u"/v/News/"_s);
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"123- News "_s, broadcasterPage()), u"/v/News/"_s);
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"123-News"_s, u"http://other.test/"_s), u"/v/123-News/"_s);
}

TEST(CapturedMedia, keepsAWholeTitleThatIsNothingButANumber)
{
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"123-"_s, broadcasterPage()), u"/v/123/"_s);
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"tv-123"_s, broadcasterPage()), u"/v/tv-123/"_s);
}

TEST(CapturedMedia, neverLeavesTheFolder)
{
    EXPECT_EQ(folderOfCaptured(u"/v"_s, u"../../etc"_s, u"http://a/"_s).count(u'/'), 3);
    EXPECT_FALSE(folderOfCaptured(u"/v"_s, u".."_s, u"http://a/"_s).contains(u".."_s));
}

} // namespace tollivar::ui
