#include "platform/web_address.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using tollivar::platform::isWebAddress;
using tollivar::platform::kMaximumWebAddress;

namespace {

struct Case {
    const char *name;
    QString address;
};

void PrintTo(const Case &tried, std::ostream *out)
{
    *out << tried.address.toStdString();
}

std::string nameOf(const testing::TestParamInfo<Case> &tried)
{
    return tried.param.name;
}

class WebAddress : public testing::TestWithParam<Case> {};
class NoWebAddress : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(WebAddress, isOne)
{
    EXPECT_TRUE(isWebAddress(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, WebAddress,
    testing::Values(
        Case{"plain", u"http://h/"_s}, Case{"secure", u"https://h.example/a?b#c"_s},
        Case{"withoutAPath", u"http://h"_s}, Case{"inCapitals", u"HTTP://H/"_s},
        Case{"withAPort", u"http://h:8080/"_s}, Case{"ofNumbers", u"http://127.0.0.1:1/"_s},
        Case{"ofTheNewerNumbers", u"https://[::1]:1/"_s}, Case{"withAUser", u"http://u:p@h/"_s},
        Case{"ofADeliveryNetwork", u"https://r3---sn-4g5e.h.example/v"_s},
        Case{"withAnUnderscore", u"http://my_host/"_s},
        Case{"inAnotherScript", u"http://m\u00fcller.example/\u00e4"_s},
        Case{"withABlank", u"http://h/a b"_s},
        Case{"withWhatBrowsersLeaveAsItIs", u"http://h/a|b?x={\"y\"}^`\\"_s},
        Case{"withALonePercentSign", u"http://h/100%"_s},
        Case{"ofTheGreatestLength", u"http://h/"_s + QString(kMaximumWebAddress - 9, u'a')}),
    nameOf);

TEST_P(NoWebAddress, isNone)
{
    EXPECT_FALSE(isWebAddress(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(
    OtherThings, NoWebAddress,
    testing::Values(
        Case{"nothing", QString()}, Case{"blank", u" "_s}, Case{"word", u"h"_s},
        Case{"withoutAScheme", u"h.example/a"_s}, Case{"withoutAnyHost", u"http://"_s},
        Case{"pathInPlaceOfAHost", u"http:///etc/passwd"_s}, Case{"withoutSlashes", u"http:h"_s},
        Case{"ofThisMachine", u"file:///etc"_s}, Case{"ofAnotherMachine", u"file://h/etc"_s},
        Case{"path", u"/etc/passwd"_s}, Case{"option", u"--http://h/"_s},
        Case{"script", u"javascript:alert(1)//http://h/"_s},
        Case{"data", u"data:text/html,<script>"_s}, Case{"source", u"view-source:http://h/"_s},
        Case{"inside", u"blob:https://h/1"_s}, Case{"ofTheBrowser", u"chrome://h/"_s},
        Case{"ofAnotherService", u"ftp://h/"_s}, Case{"stream", u"rtmp://h/a"_s},
        Case{"longerScheme", u"httpx://h/"_s}, Case{"afterABlank", u" http://h/"_s},
        Case{"lineEndInThePath", u"http://h/\r\nX: y"_s},
        Case{"lineEndInTheHost", u"http://h\n/"_s}, Case{"lineEndBehindIt", u"http://h/\n"_s},
        Case{"tab", u"http://h/\t"_s}, Case{"endOfText", u"http://h/"_s + QChar(0) + u"a"_s},
        Case{"deletion", u"http://h/\u007f"_s}, Case{"laterControls", u"http://h/\u0085"_s},
        Case{"twoHosts", u"http://h\\@evil.example/"_s},
        Case{"blankInTheHost", u"http://h evil/"_s}, Case{"portTooLarge", u"http://h:99999/"_s},
        Case{"openBracket", u"http://[::1/"_s}, Case{"emptyLabel", u"http://a..b/"_s},
        Case{"hostAsAnOption", u"http://-x/"_s},
        Case{"tooLong", u"http://h/"_s + QString(kMaximumWebAddress - 8, u'a')}),
    nameOf);
