#include "companions/capture/answer_writer.h"
#include "fetch/parser_answer.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::capture::MediaFound;
using tollivar::capture::writeAnswer;
using tollivar::fetch::AnswerRecord;
using tollivar::fetch::readAnswer;

MediaFound clip()
{
    return {.address = u"http://site.example/clip.mp4"_s,
            .title = u"Hafen im Morgenlicht – 夜明け"_s,
            .mediaType = u"video/mp4"_s,
            .extension = u".mp4"_s,
            .length = 374'290,
            .cookies = u"a=1; b=2"_s,
            .agent = u"Agent/1.0 (X; Y)"_s,
            .referer = u"http://site.example/page.html"_s,
            .location = u"http://cdn.example/clip.mp4"_s};
}

std::vector<AnswerRecord> readBack(const std::vector<MediaFound> &media)
{
    return readAnswer(QString::fromUtf8(writeAnswer(media)));
}

MediaFound named(const QString &extension, const QString &mediaType = {})
{
    return {.address = u"http://site.example/x"_s,
            .title = {},
            .mediaType = mediaType,
            .extension = extension};
}

TEST(AnswerWriter, writesOneKeyALineAndAnEmptyLineAtTheEnd)
{
    EXPECT_EQ(writeAnswer({clip()}).toStdString(), "PROTOCOL = 1\r\n"
                                                   "URL = http://site.example/clip.mp4\r\n"
                                                   "TITLE = Hafen im Morgenlicht – 夜明け\r\n"
                                                   "TYPE = MP4 Video (*.mp4)\r\n"
                                                   "COOKIES = a=1; b=2\r\n"
                                                   "AGENT = Agent/1.0 (X; Y)\r\n"
                                                   "REFERER = http://site.example/page.html\r\n"
                                                   "LOCATION = http://cdn.example/clip.mp4\r\n"
                                                   "LENGTH = 374290\r\n"
                                                   "\r\n");
}

TEST(AnswerWriter, leavesOutWhatIsNotKnown)
{
    EXPECT_EQ(writeAnswer({named(QString())}),
              "PROTOCOL = 1\r\nURL = http://site.example/x\r\n\r\n");
}

TEST(AnswerWriter, writesNothingForNothing)
{
    EXPECT_EQ(writeAnswer({}), "");
}

TEST(AnswerWriter, isReadBackAsItWasWritten)
{
    const auto records = readBack({clip()});
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].protocol, 1);
    EXPECT_EQ(records[0].address, clip().address);
    EXPECT_EQ(records[0].title, clip().title);
    EXPECT_EQ(records[0].typeDescription, u"MP4 Video (*.mp4)");
    EXPECT_EQ(records[0].extension, clip().extension);
    EXPECT_EQ(records[0].cookies, clip().cookies);
    EXPECT_EQ(records[0].agent, clip().agent);
    EXPECT_EQ(records[0].referer, clip().referer);
    EXPECT_EQ(records[0].location, clip().location);
}

TEST(AnswerWriter, keepsSeveralRecordsApartAndInOrder)
{
    MediaFound second = clip();
    second.address = u"http://site.example/second.webm"_s;
    const auto records = readBack({clip(), second, clip()});
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].address, clip().address);
    EXPECT_EQ(records[1].address, second.address);
}

TEST(AnswerWriter, describesATypeByItsEndingAndKind)
{
    EXPECT_EQ(readBack({named(u".webm"_s)})[0].typeDescription, u"WEBM Video (*.webm)");
    EXPECT_EQ(readBack({named(u".MP3"_s)})[0].typeDescription, u"MP3 Audio (*.mp3)");
    EXPECT_EQ(readBack({named(u".ogg"_s, u"audio/ogg"_s)})[0].typeDescription,
              u"OGG Audio (*.ogg)");
    EXPECT_EQ(readBack({named(u".swf"_s)})[0].typeDescription, u"SWF Animation (*.swf)");
}

TEST(AnswerWriter, describesNoTypeByAnEndingThatIsNone)
{
    for (const QString &ending :
         {u"."_s, u"mp4"_s, u".mp4)(*.exe"_s, u".a/b"_s, u".a\\b"_s, u"..mp4"_s, u".mp 4"_s,
          u".größe"_s, u".abcdefghijk"_s, u".\r\n"_s}) {
        EXPECT_EQ(readBack({named(ending)})[0].extension, QString()) << qPrintable(ending);
    }
}

TEST(AnswerWriter, letsNoValueBreakTheLineOrForgeAKey)
{
    const QString hostile =
        u"x\r\nURL = http://evil.example/\r\n\r\nURL = y\nTITLE = z\rCOOKIES = c"
        u"\u0085FOLDER = f\u2028AGENT = a\u2029\v\f\t\0b"_s;
    MediaFound medium = clip();
    medium.title = medium.cookies = medium.agent = hostile;
    medium.referer = medium.location = medium.mediaType = hostile;
    const auto records = readBack({medium});
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].address, clip().address);
    EXPECT_EQ(records[0].folder, QString());
    EXPECT_TRUE(records[0].title.startsWith(u"x URL = http://evil.example/"));
    EXPECT_TRUE(records[0].agent.startsWith(u"x  URL = http://evil.example/"));
}

TEST(AnswerWriter, letsNoAddressForgeARecord)
{
    MediaFound medium = clip();
    medium.address = u"http://a.example/\r\n\r\nURL = http://evil.example/\r\n"_s;
    const auto records = readBack({medium});
    ASSERT_EQ(records.size(), 1U);
    EXPECT_TRUE(records[0].address.startsWith(u"http://a.example/"));
}

TEST(AnswerWriter, writesEveryCharacterAsOneLineOfUtf8)
{
    for (char32_t code = 1; code < 0x11'0000; code += code < 0x3000 ? 1 : 251) {
        MediaFound medium = named(QString());
        medium.agent = u"a"_s + QString::fromUcs4(&code, 1) + u"b"_s;
        const QByteArray answer = writeAnswer({medium});
        ASSERT_EQ(answer.count('\n'), 4) << std::uint32_t(code);
        ASSERT_EQ(answer.count('\r'), 4) << std::uint32_t(code);
        ASSERT_EQ(readAnswer(QString::fromUtf8(answer)).size(), 1U) << std::uint32_t(code);
    }
}

TEST(AnswerWriter, survivesHalfASurrogatePair)
{
    MediaFound medium = clip();
    medium.title = u"half "_s + QChar(0xd800) + u" pair"_s;
    EXPECT_EQ(readBack({medium}).size(), 1U);
}

} // namespace
