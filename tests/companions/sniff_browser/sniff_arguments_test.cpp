#include "companions/sniff_browser/sniff_arguments.h"

#include <gtest/gtest.h>

namespace tollivar::sniff {

using namespace Qt::StringLiterals;

TEST(SniffArguments, nothingOpensAnEmptyWindowForTheRunningProgram)
{
    const auto read = readSniffArguments({});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->address, QString());
    EXPECT_EQ(read->recipient, Recipient::RunningProgram);
}

TEST(SniffArguments, whoGivesAParseModeReadsTheOutput)
{
    const auto read = readSniffArguments(
        {u"-parsemode"_s, u"PARSE_MODE_IE7"_s, u"-url"_s, u"https://site.example/"_s});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->address, u"https://site.example/"_s);
    EXPECT_EQ(read->recipient, Recipient::Reader);
}

TEST(SniffArguments, anythingButAPageOfTheWebIsRefused)
{
    for (const QString &address :
         {u"file:///etc/passwd"_s, u"javascript:alert(1)"_s, u"chrome://settings"_s,
          u"--load-extension=/tmp"_s, u""_s, u"http://"_s}) {
        EXPECT_FALSE(readSniffArguments({u"-url"_s, address})) << address.toStdString();
    }
}

TEST(SniffArguments, unknownAndHalfArgumentsAreRefused)
{
    EXPECT_FALSE(readSniffArguments({u"-url"_s}));
    EXPECT_FALSE(readSniffArguments({u"-other"_s, u"x"_s}));
}

} // namespace tollivar::sniff
