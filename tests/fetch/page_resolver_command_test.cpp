#include "fetch/page_resolver.h"
#include "platform/command_line_text.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

QString lineFor(const QString &address)
{
    return parserCommandLine(address, u" ", u"PARSE_MODE_IE7", u"PARSE_TYPE_FLVAUTO");
}

TEST(ParserCommandLine, namesAddressModeAndType)
{
    EXPECT_EQ(lineFor(QStringLiteral("http://s/?a=b&c")),
              QStringLiteral("PageProbe.exe -url \"http://s/?a=b&c\" -parsemode PARSE_MODE_IE7 "
                             "-parsetype PARSE_TYPE_FLVAUTO -sniffcache true"));
}

TEST(ParserCommandLine, theSecondOneHasNoBlankBeforeItsMode)
{
    EXPECT_TRUE(parserCommandLine(QStringLiteral("http://s/"), u"", u"PARSE_MODE_IE6",
                                  u"PARSE_TYPE_FLVAUTO")
                    .contains(u" -parsemodePARSE_MODE_IE6 -parsetype "));
}

TEST(ParserCommandLine, theAddressIsOneArgumentWhateverItHolds)
{
    const QStringList hostile = {
        QStringLiteral("http://s/ -parsetype X"),
        QStringLiteral("http://s/\" -o /etc/passwd \""),
        QStringLiteral("http://s/\\"),
        QStringLiteral("http://s/\\\\\\\""),
        QStringLiteral("http://s/\r\n\t\x01"),
        QStringLiteral("$(touch x) `x` ; | & > %1 %2 %s"),
        QString(),
    };
    for (const QString &address : hostile) {
        const QStringList words = platform::splitCommandLine(lineFor(address));
        ASSERT_EQ(words.size(), 9) << qPrintable(address);
        EXPECT_EQ(words[1], QStringLiteral("-url"));
        EXPECT_EQ(words[3], QStringLiteral("-parsemode"));
        EXPECT_FALSE(words[2].contains(u'"'));
        EXPECT_FALSE(words[2].contains(u'\n'));
    }
}

TEST(ParserCommandLine, aQuoteIsPercentEncoded)
{
    EXPECT_EQ(platform::splitCommandLine(lineFor(QStringLiteral("http://s/\"\n")))[2],
              QStringLiteral("http://s/%22%0A"));
}

TEST(ApplyAnswer, copiesEveryFieldAlsoEmptyOnes)
{
    tasks::TaskInfo task;
    task.strCookies = QStringLiteral("old");
    AnswerRecord record;
    record.protocol = 1;
    record.address = QStringLiteral("https://s/a");
    record.agent = QStringLiteral("agent");

    applyAnswer(record, task);

    EXPECT_EQ(task.strDownloadUrl, QStringLiteral("https://s/a"));
    EXPECT_EQ(task.strCookies, QString());
    EXPECT_EQ(task.strAgent, QStringLiteral("agent"));
    EXPECT_EQ(task.strFileType, QString());
    EXPECT_EQ(task.nProtocol, 1);
}

TEST(ApplyAnswer, aRecordWithoutAProtocolIsAStream)
{
    tasks::TaskInfo task;
    AnswerRecord record;
    record.address = QStringLiteral("rtmp://s/app");

    applyAnswer(record, task);

    EXPECT_EQ(task.nProtocol, 0);
    EXPECT_EQ(task.strDownloadUrl, QStringLiteral("rtmp://s/app"));
}

TEST(ApplyAnswer, anAddressOfAnotherKindIsLeftOut)
{
    for (const QString &address :
         {QStringLiteral("file:///etc/passwd"), QStringLiteral("ftp://s/a"),
          QStringLiteral("javascript:alert(1)"), QStringLiteral("/etc/passwd")}) {
        tasks::TaskInfo task;
        AnswerRecord record;
        record.protocol = 1;
        record.address = address;
        applyAnswer(record, task);
        EXPECT_EQ(task.strDownloadUrl, QString());
    }
}

TEST(ApplyAnswer, aDangerousTypeIsMadeHarmlessInTheRecordToo)
{
    tasks::TaskInfo task;
    AnswerRecord record;
    record.extension = QStringLiteral("/../x.sh");

    applyAnswer(record, task);

    EXPECT_FALSE(task.strFileType.contains(u'/'));
    EXPECT_TRUE(task.strFileType.endsWith(u".download"));
}

} // namespace
} // namespace tollivar::fetch
