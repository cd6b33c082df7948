#include "fetch/parser_answer.h"

#include <gtest/gtest.h>

#include <random>

namespace tollivar::fetch {
namespace {

const QString kGood =
    QStringLiteral("PROTOCOL = 1\r\nURL = http://s/a.flv\r\n"
                   "TITLE = A clip\r\nTYPE = Flash Video (*.flv)\r\n"
                   "COOKIES = a=b\r\nAGENT = Some Agent\r\nREFERER = http://r/\r\n"
                   "LENGTH = 12\r\n\r\n");

TEST(ParserAnswer, aBlockOfLinesIsARecord)
{
    const auto records = readAnswer(kGood);

    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].protocol, 1);
    EXPECT_EQ(records[0].address, QStringLiteral("http://s/a.flv"));
    EXPECT_EQ(records[0].title, QStringLiteral("A clip"));
    EXPECT_EQ(records[0].typeDescription, QStringLiteral("Flash Video (*.flv)"));
    EXPECT_EQ(records[0].extension, QStringLiteral(".flv"));
    EXPECT_EQ(records[0].cookies, QStringLiteral("a=b"));
    EXPECT_EQ(records[0].agent, QStringLiteral("Some Agent"));
    EXPECT_EQ(records[0].referer, QStringLiteral("http://r/"));
}

TEST(ParserAnswer, everyKeyFillsItsField)
{
    const auto records = readAnswer(QStringLiteral(
        "APP = a\nFLASHVER = f\nSWFURL = s\nTCURL = t\nPAGEURL = p\nPLAYPATH = y\n"
        "FOLDER = o\nLOCATION = l\nCONNECTION = x\nPRAGMA = x\nCACHECONTROL = x\n\n"));

    ASSERT_EQ(records.size(), 1U);
    AnswerRecord expected;
    expected.app = QStringLiteral("a");
    expected.flashVer = QStringLiteral("f");
    expected.swfUrl = QStringLiteral("s");
    expected.tcUrl = QStringLiteral("t");
    expected.pageUrl = QStringLiteral("p");
    expected.playPath = QStringLiteral("y");
    expected.folder = QStringLiteral("o");
    expected.location = QStringLiteral("l");
    EXPECT_EQ(records[0], expected);
}

TEST(ParserAnswer, indentedKeysAreReadAndValuesKeepTheirOwnBlanks)
{
    const auto records = readAnswer(QStringLiteral("  \tURL =   http://s/ \n\n"));

    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].address, QStringLiteral("  http://s/ "));
}

TEST(ParserAnswer, twoBlocksAreTwoRecordsInOrder)
{
    const auto records = readAnswer(QStringLiteral("URL = a\r\n\r\nURL = b\r\n\r\n"));

    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].address, QStringLiteral("a"));
    EXPECT_EQ(records[1].address, QStringLiteral("b"));
}

TEST(ParserAnswer, anAnswerWithoutTheFinalEmptyLineHasNoRecord)
{
    EXPECT_TRUE(readAnswer(QStringLiteral("URL = a\r\nTYPE = b\r\n")).empty());
    EXPECT_TRUE(readAnswer(QStringLiteral("URL = a\r\n\r")).empty());
}

TEST(ParserAnswer, anEmptyLineBeforeTheFirstKeyGivesAnEmptyFirstRecord)
{
    const auto records = readAnswer(QStringLiteral("\r\nURL = a\r\n\r\n"));

    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0], AnswerRecord{});
}

TEST(ParserAnswer, aProtocolThatIsNoNumberIsNotHttp)
{
    EXPECT_EQ(readAnswer(QStringLiteral("PROTOCOL = one\n\n")).front().protocol, 0);
    EXPECT_EQ(readAnswer(QStringLiteral("URL = a\n\n")).front().protocol, 0);
}

TEST(ParserAnswer, withoutBothMarksThereIsNoExtension)
{
    const auto extensionOf = [](const QString &type) {
        return readAnswer(QStringLiteral("TYPE = ") + type + QStringLiteral("\n\n"))
            .front()
            .extension;
    };
    EXPECT_EQ(extensionOf(QStringLiteral("Flash Video")), QString());
    EXPECT_EQ(extensionOf(QStringLiteral("Flash (*.flv")), QString());
    EXPECT_EQ(extensionOf(QStringLiteral(") Flash (*.flv)")), QStringLiteral(".flv"));
    EXPECT_EQ(extensionOf(QStringLiteral("(*)")), QString());
}

TEST(ParserAnswer, aMillionLinesAreBounded)
{
    EXPECT_LE(readAnswer(QString(1'000'000, u'\n')).size(), 10'000U);
}

TEST(ParserAnswer, damagedAnswersNeverHurt)
{
    constexpr unsigned kSeed = 7;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 2'000; ++round) {
        QString text = kGood.left(static_cast<qsizetype>(random() % 150));
        for (int flip = 0; flip < 3 && !text.isEmpty(); ++flip) {
            text[static_cast<qsizetype>(random()) % text.size()] =
                QChar(static_cast<char16_t>(random()));
        }
        for (const AnswerRecord &record : readAnswer(text + QStringLiteral("\n\n"))) {
            EXPECT_FALSE(record.address.contains(u'\n'));
        }
    }
}

} // namespace
} // namespace tollivar::fetch
