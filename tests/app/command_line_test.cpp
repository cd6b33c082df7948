#include "app/command_line.h"
#include "app/task_request.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

TEST(CommandLine, anAddressStandsBehindItsName)
{
    EXPECT_EQ(addressOf(words("Tollivar -url y")), QStringLiteral("y"));
    EXPECT_EQ(addressOf(words("Tollivar -URL y")), QStringLiteral("y"));
}

TEST(CommandLine, argumentsAreReadInPairs)
{
    EXPECT_EQ(addressOf(words("Tollivar a b -url X")), QStringLiteral("X"));
    EXPECT_EQ(addressOf(words("Tollivar a -url X")), std::nullopt);
    EXPECT_EQ(addressOf(words("Tollivar x -url y")), std::nullopt);
}

TEST(CommandLine, theFirstPairWins)
{
    EXPECT_EQ(addressOf(words("Tollivar -url X -url Y")), QStringLiteral("X"));
}

TEST(CommandLine, aNameWithoutAValueBringsNothing)
{
    EXPECT_EQ(addressOf(words("Tollivar -url")), std::nullopt);
    EXPECT_EQ(addressOf(words("Tollivar")), std::nullopt);
    EXPECT_EQ(addressOf({}), std::nullopt);
}

TEST(CommandLine, aLinkOfTheProgramsOwnKindGivesTheAddressInIt)
{
    EXPECT_EQ(addressOf(words("Tollivar -url tollivar:https://example.org/a?b=c#d")),
              QStringLiteral("https://example.org/a?b=c#d"));
    EXPECT_EQ(addressOf(words("Tollivar -url TOLLIVAR:example.org/a")),
              QStringLiteral("example.org/a"));
    EXPECT_EQ(addressOf(words("Tollivar -url tollivar:")), QString());
    EXPECT_EQ(addressOf(words("Tollivar -url https://tollivar:1/a")),
              QStringLiteral("https://tollivar:1/a"));
}

TEST(CommandLine, aLinkCannotSmuggleAnAddressPastTheChecks)
{
    for (const char *line :
         {"Tollivar -url tollivar:file:///etc/passwd", "Tollivar -url tollivar:javascript:alert(1)",
          "Tollivar -url tollivar:tollivar:http://example.org/", "Tollivar -url tollivar:///x",
          "Tollivar -url tollivar:"}) {
        const auto address = addressOf(words(line));
        ASSERT_TRUE(address) << line;
        EXPECT_FALSE(checkedAddress(*address)) << line;
    }
}

} // namespace
} // namespace tollivar::app
