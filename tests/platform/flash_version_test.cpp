#include "platform/flash_version.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

TEST(FlashVersion, readsNumbersBetweenCommasOrDots)
{
    EXPECT_EQ(readFlashVersion(u"32,0,0,465"), (FlashVersion{32, 0, 0, 465}));
    EXPECT_EQ(readFlashVersion(u" 9.0.124.0 and more"), (FlashVersion{9, 0, 124, 0}));
    EXPECT_EQ(readFlashVersion(u"9, 0, 45, 0"), (FlashVersion{9, 0, 45, 0}));
}

TEST(FlashVersion, anythingElseIsFourZeros)
{
    for (const auto text : {u"", u"9", u"9.0.1", u"a.b.c.d", u"-1,0,0,0", u"99999999999,0,0,0"}) {
        EXPECT_EQ(readFlashVersion(text), FlashVersion{});
    }
}

TEST(FlashVersion, comesFromThePlayersModule)
{
    const test::Sandbox sandbox;
    EXPECT_EQ(flashPlayerVersion({sandbox.path()}), FlashVersion{});
    sandbox.write(u"libflashplayer.so"_s, QByteArray("\x7F"
                                                     "ELF") +
                                              QByteArray(5'000, '\0') + "LNX 11,2,202,644" + '\0');
    EXPECT_EQ(flashPlayerVersion({u"/nowhere"_s, sandbox.path()}), (FlashVersion{11, 2, 202, 644}));
}

} // namespace tollivar::platform
