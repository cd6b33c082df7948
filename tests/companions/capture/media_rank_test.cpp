#include "companions/capture/media_rank.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t kLarge = 50'000'000;

WatchedRequest answered(const QString &name, const QString &type,
                        std::optional<std::int64_t> length = kLarge)
{
    const QString address = QStringLiteral("http://h/") + name;
    return {.namedAddress = address,
            .address = address,
            .mediaType = type,
            .status = 200,
            .length = length,
            .sent = {.cookies = QStringLiteral("c=1"),
                     .agent = QStringLiteral("agent"),
                     .referer = QStringLiteral("http://h/page")},
            .isSentKnown = true};
}

const QString kVideo = QStringLiteral("video/mp4");
const QString kSound = QStringLiteral("audio/mpeg");

std::vector<std::string> names(const std::vector<MediaFound> &media)
{
    std::vector<std::string> found;
    for (const MediaFound &medium : media) {
        found.push_back(medium.address.mid(9).toStdString());
    }
    return found;
}

std::vector<std::string> ranked(const PageMedia &page,
                                MediaPreference preference = MediaPreference::Video)
{
    return names(rankMedia(page, preference));
}

TEST(MediaRank, recordsCarryWhatTheBrowserSent)
{
    const auto media = rankMedia({.answered = {answered(QStringLiteral("a"), kVideo)},
                                  .played = {},
                                  .offered = {},
                                  .title = QStringLiteral("Title")},
                                 MediaPreference::Video);
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].title, u"Title");
    EXPECT_EQ(media[0].mediaType, u"video/mp4");
    EXPECT_EQ(media[0].extension, u".mp4");
    EXPECT_EQ(media[0].length, kLarge);
    EXPECT_EQ(media[0].cookies, u"c=1");
    EXPECT_EQ(media[0].agent, u"agent");
    EXPECT_EQ(media[0].referer, u"http://h/page");
    EXPECT_TRUE(media[0].location.isEmpty());
}

TEST(MediaRank, afterARedirectTheLocationIsTold)
{
    auto request = answered(QStringLiteral("final.mp4"), kVideo);
    request.namedAddress = QStringLiteral("http://h/go");
    const auto media = rankMedia({.answered = {request}, .played = {}, .offered = {}, .title = {}},
                                 MediaPreference::Video);
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, u"http://h/final.mp4");
    EXPECT_EQ(media[0].location, u"http://h/final.mp4");
}

TEST(MediaRank, theEndingComesFromTheAddressWhenTheTypeSaysNothing)
{
    const auto media =
        rankMedia({.answered = {answered(QStringLiteral("a.FLV"),
                                         QStringLiteral("application/octet-stream"))},
                   .played = {},
                   .offered = {},
                   .title = {}},
                  MediaPreference::Video);
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].extension, u".flv");
}

TEST(MediaRank, videosComeBeforeSoundsHoweverLong)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("song"), kSound, kLarge),
                                     answered(QStringLiteral("clip"), kVideo, 1'000)},
                        .played = {},
                        .offered = {},
                        .title = {}}),
                ElementsAre("clip", "song"));
}

TEST(MediaRank, longerFilesComeFirst)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("teaser"), kVideo, 1'000),
                                     answered(QStringLiteral("film"), kVideo, kLarge),
                                     answered(QStringLiteral("unknown"), kVideo, std::nullopt)},
                        .played = {},
                        .offered = {},
                        .title = {}}),
                ElementsAre("film", "teaser", "unknown"));
}

TEST(MediaRank, whatThePagePlaysComesBeforeWhatIsLarger)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("next"), kVideo, kLarge),
                                     answered(QStringLiteral("shown"), kVideo, 1'000)},
                        .played = {{QStringLiteral("http://h/shown"), 1'000}},
                        .offered = {},
                        .title = {}}),
                ElementsAre("shown", "next"));
}

TEST(MediaRank, whatIsPlayedUnderItsNameBeforeARedirectCounts)
{
    auto request = answered(QStringLiteral("shown"), kVideo, 1'000);
    request.namedAddress = QStringLiteral("http://h/go");
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("next"), kVideo, kLarge), request},
                        .played = {{QStringLiteral("http://h/go"), 1'000}},
                        .offered = {},
                        .title = {}}),
                ElementsAre("shown", "next"));
}

TEST(MediaRank, theLargePlayerComesBeforeTheSmallOne)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("preview"), kVideo, kLarge),
                                     answered(QStringLiteral("main"), kVideo, 1'000)},
                        .played = {{QStringLiteral("http://h/preview"), 160.0 * 90},
                                   {QStringLiteral("http://h/main"), 1'280.0 * 720}},
                        .offered = {},
                        .title = {}}),
                ElementsAre("main", "preview"));
}

TEST(MediaRank, shortSoundsComeLast)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("click"), kSound, 3'000),
                                     answered(QStringLiteral("song"), kSound, kLarge)},
                        .played = {{QStringLiteral("http://h/click"), 0}},
                        .offered = {answered(QStringLiteral("linked.mp4"), {}, std::nullopt)},
                        .title = {}}),
                ElementsAre("song", "linked.mp4", "click"));
}

TEST(MediaRank, whatIsOnlyOfferedKeepsItsOrderBehindWhatWasFetched)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("song"), kSound)},
                        .played = {},
                        .offered = {answered(QStringLiteral("one.mp4"), {}, std::nullopt),
                                    answered(QStringLiteral("two.mp4"), {}, std::nullopt)},
                        .title = {}}),
                ElementsAre("song", "one.mp4", "two.mp4"));
}

TEST(MediaRank, whatIsFetchedAndOfferedComesOnce)
{
    EXPECT_THAT(ranked({.answered = {answered(QStringLiteral("one.mp4"), kVideo)},
                        .played = {},
                        .offered = {answered(QStringLiteral("one.mp4"), {}, std::nullopt)},
                        .title = {}}),
                ElementsAre("one.mp4"));
}

TEST(MediaRank, flashComesFirstWhenItIsPreferred)
{
    const PageMedia page{.answered = {answered(QStringLiteral("clip"), kVideo)},
                         .played = {},
                         .offered = {answered(QStringLiteral("game.swf"), {}, std::nullopt)},
                         .title = {}};
    EXPECT_THAT(ranked(page, MediaPreference::Flash), ElementsAre("game.swf", "clip"));
    EXPECT_THAT(ranked(page, MediaPreference::Video), ElementsAre("clip", "game.swf"));
}

TEST(MediaRank, streamsInPartsAreNoMedia)
{
    EXPECT_THAT(
        ranked({.answered = {answered(QStringLiteral("list.m3u8"),
                                      QStringLiteral("application/x-mpegurl")),
                             answered(QStringLiteral("1.ts"), QStringLiteral("video/mp2t"))},
                .played = {},
                .offered = {},
                .title = {}}),
        IsEmpty());
}

TEST(MediaRank, onlyAFetchedVideoSatisfies)
{
    const auto satisfies = [](const PageMedia &page) {
        return isSatisfying(page, MediaPreference::Video);
    };
    EXPECT_TRUE(satisfies({.answered = {answered(QStringLiteral("a"), kVideo)},
                           .played = {},
                           .offered = {},
                           .title = {}}));
    EXPECT_FALSE(satisfies({.answered = {answered(QStringLiteral("a"), kSound)},
                            .played = {},
                            .offered = {answered(QStringLiteral("linked.mp4"), {})},
                            .title = {}}));
    EXPECT_FALSE(satisfies({}));
}

TEST(MediaRank, whereFlashIsPreferredOnlyFlashSatisfiesFetchedOrNot)
{
    const auto satisfies = [](const PageMedia &page) {
        return isSatisfying(page, MediaPreference::Flash);
    };
    EXPECT_FALSE(satisfies({.answered = {answered(QStringLiteral("a"), kVideo)},
                            .played = {},
                            .offered = {},
                            .title = {}}));
    EXPECT_TRUE(satisfies({.answered = {},
                           .played = {},
                           .offered = {answered(QStringLiteral("game.swf"), {})},
                           .title = {}}));
}

} // namespace
} // namespace tollivar::capture
