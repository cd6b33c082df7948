#include "companions/capture/devtools_message.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr qsizetype kMaximum = 100;

std::vector<QByteArray> takeAll(MessageSplitter &splitter)
{
    std::vector<QByteArray> messages;
    while (auto message = splitter.next()) {
        messages.push_back(*message);
    }
    return messages;
}

TEST(DevToolsMessage, readsAnEventWithItsSession)
{
    const auto message = parseDevToolsMessage(
        R"({"method":"Page.loadEventFired","params":{"timestamp":1.5},"sessionId":"A1"})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->id, 0);
    EXPECT_EQ(message->method, u"Page.loadEventFired");
    EXPECT_EQ(message->session, u"A1");
    EXPECT_EQ(message->content[u"timestamp"].toDouble(), 1.5);
}

TEST(DevToolsMessage, readsAReply)
{
    const auto message = parseDevToolsMessage(R"({"id":7,"result":{"frameId":"F"}})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->id, 7);
    EXPECT_EQ(message->content[u"frameId"].toString(), u"F");
}

TEST(DevToolsMessage, aFailedCommandsReplyIsEmpty)
{
    const auto message =
        parseDevToolsMessage(R"({"id":7,"error":{"code":-32601,"message":"no such"}})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->id, 7);
    EXPECT_TRUE(message->content.isEmpty());
}

class NoDevToolsMessage : public ::testing::TestWithParam<const char *> {};

TEST_P(NoDevToolsMessage, isRefused)
{
    EXPECT_FALSE(parseDevToolsMessage(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Hostile, NoDevToolsMessage,
                         ::testing::Values("", "{}", "[]", "null", "42", "\"text\"", "{\"id\":0}",
                                           "{\"id\":-3,\"result\":{}}", "{\"id\":\"7\"}",
                                           "{\"id\":1.5,\"method\":\"x\"}", "{\"id\":1e99}",
                                           "{\"method\":\"\"}", "{\"method\":[]}",
                                           "{\"method\":\"x\"", "{\"method\":\"x\"} trailing",
                                           "\xff\xfe", "<html>"));

TEST(DevToolsMessage, contentOfTheWrongKindIsEmpty)
{
    const auto message = parseDevToolsMessage(R"({"method":"x","params":[1,2],"sessionId":{}})");
    ASSERT_TRUE(message);
    EXPECT_TRUE(message->content.isEmpty());
    EXPECT_TRUE(message->session.isEmpty());
}

TEST(DevToolsMessage, deepNestingIsRefusedWithoutHarm)
{
    EXPECT_FALSE(parseDevToolsMessage(R"({"method":"x","params":)" + QByteArray(100'000, '[')));
}

TEST(DevToolsMessage, everyCutAndEveryFlippedByteIsSurvived)
{
    const QByteArray good =
        R"({"method":"Network.x","params":{"a":[1,{"b":null}],"c":"\u00e4"},"sessionId":"S"})";
    for (qsizetype i = 0; i < good.size(); ++i) {
        EXPECT_FALSE(parseDevToolsMessage(good.left(i))) << i;
        for (const int bit : {1, 4, 128}) {
            QByteArray flipped = good;
            flipped[i] = static_cast<char>(flipped[i] ^ bit);
            static_cast<void>(parseDevToolsMessage(flipped));
        }
    }
}

TEST(MessageSplitter, givesEachMessageWithoutItsEnd)
{
    MessageSplitter splitter(kMaximum);
    splitter.add(QByteArray("one\0two\0\0thr", 12));
    EXPECT_THAT(takeAll(splitter), ElementsAre("one", "two", ""));
    splitter.add(QByteArray("ee\0", 3));
    EXPECT_THAT(takeAll(splitter), ElementsAre("three"));
}

TEST(MessageSplitter, joinsAMessageThatComesByteByByte)
{
    MessageSplitter splitter(kMaximum);
    const QByteArray stream("alpha\0beta\0", 11);
    std::vector<QByteArray> messages;
    for (const char byte : stream) {
        splitter.add(QByteArray(1, byte));
        for (auto &message : takeAll(splitter)) {
            messages.push_back(message);
        }
    }
    EXPECT_THAT(messages, ElementsAre("alpha", "beta"));
}

TEST(MessageSplitter, takesTheLongestMessageAndRefusesALongerOne)
{
    MessageSplitter splitter(kMaximum);
    splitter.add(QByteArray(kMaximum, 'x') + '\0');
    EXPECT_THAT(takeAll(splitter), ElementsAre(QByteArray(kMaximum, 'x')));
    EXPECT_FALSE(splitter.isOverflown());
    splitter.add(QByteArray(kMaximum + 1, 'x') + '\0');
    EXPECT_THAT(takeAll(splitter), IsEmpty());
    EXPECT_TRUE(splitter.isOverflown());
}

TEST(MessageSplitter, anEndlessMessageIsRefusedBeforeItEnds)
{
    MessageSplitter splitter(kMaximum);
    splitter.add(QByteArray(kMaximum + 1, 'x'));
    EXPECT_THAT(takeAll(splitter), IsEmpty());
    EXPECT_TRUE(splitter.isOverflown());
}

TEST(MessageSplitter, saysNothingMoreAfterAnOverflow)
{
    MessageSplitter splitter(kMaximum);
    splitter.add(QByteArray(kMaximum + 1, 'x'));
    EXPECT_THAT(takeAll(splitter), IsEmpty());
    splitter.add(QByteArray("\0good\0", 6));
    EXPECT_THAT(takeAll(splitter), IsEmpty());
}

} // namespace
} // namespace tollivar::capture
