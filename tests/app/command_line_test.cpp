#include "app/command_line.h"

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

} // namespace
} // namespace tollivar::app
