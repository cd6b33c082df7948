#include "fetch/page_resolver.h"
#include "tests/support/parser_script.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

using platform::AutoResetEvent;

const QString kCommand = parserCommandLine(QStringLiteral("http://s/page"), u" ", u"PARSE_MODE_IE7",
                                           u"PARSE_TYPE_FLVAUTO");

TEST(PageResolver, takesTheFirstRecordOfTheAnswer)
{
    const test::ParserScript parser;
    parser.answer("PROTOCOL = 1\r\nURL = http://s/1\r\nTYPE = V (*.mp4)\r\n\r\n"
                  "PROTOCOL = 1\r\nURL = http://s/2\r\n\r\n");
    AutoResetEvent stop;
    tasks::TaskInfo task;

    EXPECT_EQ(resolvePage(stop, kCommand, task), StepResult::Done);

    EXPECT_EQ(task.strDownloadUrl, QStringLiteral("http://s/1"));
    EXPECT_EQ(task.strFileType, QStringLiteral(".mp4"));
}

TEST(PageResolver, anAnswerWithoutARecordLeavesTheTaskAsItIs)
{
    const test::ParserScript parser;
    parser.answer("");
    AutoResetEvent stop;
    tasks::TaskInfo task;
    task.strAgent = QStringLiteral("kept");

    EXPECT_EQ(resolvePage(stop, kCommand, task), StepResult::Done);

    EXPECT_EQ(task.strAgent, QStringLiteral("kept"));
    EXPECT_EQ(task.strDownloadUrl, QString());
}

TEST(PageResolver, anEmptyFirstRecordIsTakenAndHasNoAddress)
{
    const test::ParserScript parser;
    parser.answer("\r\nPROTOCOL = 1\r\nURL = http://s/2\r\n\r\n");
    AutoResetEvent stop;
    tasks::TaskInfo task;

    EXPECT_EQ(resolvePage(stop, kCommand, task), StepResult::Done);

    EXPECT_EQ(task.strDownloadUrl, QString());
    EXPECT_EQ(task.nProtocol, 0);
}

TEST(PageResolver, aLongAnswerArrivesWhole)
{
    const test::ParserScript parser;
    QByteArray answer = "PROTOCOL = 1\r\nURL = http://s/";
    answer += QByteArray(50'000, 'x') + "\r\n\r\n";
    parser.answer(answer);
    AutoResetEvent stop;
    tasks::TaskInfo task;

    EXPECT_EQ(resolvePage(stop, kCommand, task), StepResult::Done);

    EXPECT_EQ(task.strDownloadUrl.size(), 50'009);
}

TEST(PageResolver, aParserThatCannotBeStartedFails)
{
    AutoResetEvent stop;
    tasks::TaskInfo task;
    EXPECT_EQ(resolvePage(stop, QStringLiteral("NoSuchParser.exe -url x"), task),
              StepResult::ParseFailed);
}

TEST(PageResolver, aStopKillsAParserThatHangs)
{
    const test::ParserScript parser;
    parser.hang();
    AutoResetEvent stop;
    tasks::TaskInfo task;
    StepResult result = StepResult::Done;
    std::thread resolve([&] { result = resolvePage(stop, kCommand, task); });
    stop.set();
    resolve.join();

    EXPECT_EQ(result, StepResult::Stopped);
    EXPECT_FALSE(stop.isSet());
}

} // namespace
} // namespace tollivar::fetch
