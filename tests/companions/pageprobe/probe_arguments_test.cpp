#include "companions/pageprobe/probe_arguments.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::capture::MediaPreference;
using tollivar::probe::ProbeMode;
using tollivar::probe::readProbeArguments;

const QString kAddress = u"http://site.example/page.html"_s;

TEST(ProbeArguments, readsTheWholeCommandLine)
{
    const auto read =
        readProbeArguments({u"-url"_s, kAddress, u"-parsemode"_s, u"PARSE_MODE_IE7"_s,
                            u"-parsetype"_s, u"PARSE_TYPE_SWFAUTO"_s, u"-sniffcache"_s, u"true"_s});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->address, kAddress);
    EXPECT_EQ(read->mode, ProbeMode::BrowserFirst);
    EXPECT_EQ(read->preference, MediaPreference::Flash);
}

TEST(ProbeArguments, needsTheAddressAlone)
{
    const auto read = readProbeArguments({u"-url"_s, kAddress});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mode, ProbeMode::BrowserFirst);
    EXPECT_EQ(read->preference, MediaPreference::Video);
}

TEST(ProbeArguments, takesTheModeInOneWordWithItsName)
{
    const auto read = readProbeArguments(
        {u"-url"_s, kAddress, u"-parsemodePARSE_MODE_IE6"_s, u"-parsetype"_s, u"X"_s});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mode, ProbeMode::ReadingFirst);
    EXPECT_EQ(readProbeArguments({u"-parsemodePARSE_MODE_IE7"_s, u"-url"_s, kAddress})->mode,
              ProbeMode::BrowserFirst);
}

TEST(ProbeArguments, takesAModeItDoesNotKnowAsTheFirst)
{
    EXPECT_EQ(readProbeArguments({u"-url"_s, kAddress, u"-parsemode"_s, u"PARSE_MODE_IE9"_s})->mode,
              ProbeMode::BrowserFirst);
}

TEST(ProbeArguments, takesEveryOtherTypeAsVideo)
{
    EXPECT_EQ(readProbeArguments({u"-url"_s, kAddress, u"-parsetype"_s, u"PARSE_TYPE_VIDEO"_s})
                  ->preference,
              MediaPreference::Video);
}

TEST(ProbeArguments, takesAnAddressAsItStands)
{
    for (const QString &address :
         {u"http://127.0.0.1:8080/a b?x=\"1\"&y=%20#z"_s, u"https://höhe.example/ü"_s,
          u"HTTP://SITE.EXAMPLE/"_s, u"http://[::1]/x"_s}) {
        const auto read = readProbeArguments({u"-url"_s, address});
        ASSERT_TRUE(read) << qPrintable(address);
        EXPECT_EQ(read->address, address);
    }
}

TEST(ProbeArguments, refusesAnAddressThatCannotBeFetched)
{
    for (const QString &address :
         {QString(), u"-url"_s, u"--exec=reboot"_s, u"file:///etc/passwd"_s,
          u"ftp://site.example/x"_s, u"javascript:alert(1)"_s, u"about:blank"_s,
          u"chrome://version"_s, u"data:text/html,x"_s, u"site.example/x"_s, u"http:"_s,
          u"http://"_s, u"http:///path"_s, u" -x http://a/"_s,
          u"view-source:http://site.example/"_s}) {
        EXPECT_FALSE(readProbeArguments({u"-url"_s, address})) << qPrintable(address);
    }
}

TEST(ProbeArguments, refusesWhatItDoesNotKnowAndWhatHasNoValue)
{
    EXPECT_FALSE(readProbeArguments({}));
    EXPECT_FALSE(readProbeArguments({u"-url"_s}));
    EXPECT_FALSE(readProbeArguments({u"-parsemode"_s, u"PARSE_MODE_IE7"_s}));
    EXPECT_FALSE(readProbeArguments({u"-url"_s, kAddress, u"-parsemode"_s}));
    EXPECT_FALSE(readProbeArguments({u"-url"_s, kAddress, u"-sniffcache"_s}));
    EXPECT_FALSE(readProbeArguments({u"-url"_s, kAddress, u"--help"_s, u"x"_s}));
    EXPECT_FALSE(readProbeArguments({kAddress}));
}

} // namespace
