#include "platform/browser_engine.h"

namespace {

using namespace Qt::StringLiterals;
using tollivar::platform::kUnknownBrowserVersion;
using tollivar::platform::majorVersionIn;

TEST(BrowserVersion, isTheNumberBeforeTheFirstPoint)
{
    const std::vector<std::pair<QString, int>> cases = {
        {u"Chromium 156.0.8078.79"_s, 156},
        {u"Chromium 156.0.8078.79 built on Debian GNU/Linux 12 (bookworm)\n"_s, 156},
        {u"Google Chrome 120.0.6099.109 \n"_s, 120},
        {u"Microsoft Edge 98.0"_s, 98},
        {u"9.0.1"_s, 9},
        {u"Version\t12.5"_s, 12},
        {u"Browser 2 of 3: 44.1"_s, 44},
        {u"0.9"_s, 0},
        {u"X 999999.0"_s, 999'999},
        {u"X 007.1"_s, 7},
    };
    for (const auto &[text, version] : cases) {
        EXPECT_EQ(majorVersionIn(text), version) << qPrintable(text);
    }
}

TEST(BrowserVersion, isUnknownInAnythingElse)
{
    const QStringList texts = {QString(),
                               u"."_s,
                               u"Chromium"_s,
                               u"Chromium 156"_s,
                               u"Chromium v156.0"_s,
                               u"Chromium -1.0"_s,
                               u"Chromium .5"_s,
                               u"Chromium ٣.٤"_s,
                               u"X 1000000.0"_s,
                               u"X "_s + QString(5'000, u'9') + u".0"_s,
                               QString(QChar::Null) + u"1"_s};
    for (const QString &text : texts) {
        EXPECT_EQ(majorVersionIn(text), kUnknownBrowserVersion) << qPrintable(text.left(40));
    }
}

TEST(BrowserVersion, survivesEveryCutOfAGoodAnswer)
{
    const QString good = u"Chromium 156.0.8078.79"_s;
    for (qsizetype length = 0; length <= good.size(); ++length) {
        const int version = majorVersionIn(QStringView(good).left(length));
        EXPECT_EQ(version, length > good.indexOf(u'.') ? 156 : kUnknownBrowserVersion);
    }
}

} // namespace
