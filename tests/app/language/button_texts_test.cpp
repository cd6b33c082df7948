#include "app/language/button_texts.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace tollivar::language {
namespace {

using namespace Qt::StringLiterals;

/// The id where a button of Qt's has one of ours, else what Qt says.
QString shown(const char *context, const char *source)
{
    const ButtonTexts texts([](const QString &id) { return id; });
    return QCoreApplication::translate(context, source);
}

TEST(ButtonTexts, standOnTheButtonsOfEveryDesktop)
{
    for (const auto &[source, id] : {std::pair("OK", u"strOK"_s),
                                     {"&OK", u"strOK"_s},
                                     {"Cancel", u"strCancel"_s},
                                     {"&Cancel", u"strCancel"_s},
                                     {"&Yes", u"strYes"_s},
                                     {"&No", u"strNo"_s},
                                     {"Retry", u"strRetry"_s},
                                     {"Close", u"strClose"_s}}) {
        EXPECT_EQ(shown("QPlatformTheme", source), id);
        EXPECT_EQ(shown("QGnomeTheme", source), id);
    }
}

TEST(ButtonTexts, leaveEverythingElse)
{
    EXPECT_EQ(shown("QPlatformTheme", "Help"), u"Help"_s);
    EXPECT_EQ(shown("QFileDialog", "Cancel"), u"Cancel"_s);
    EXPECT_EQ(shown("MediaPanel", "OK"), u"OK"_s);
}

TEST(ButtonTexts, goWithTheObject)
{
    EXPECT_EQ(shown("QPlatformTheme", "&Yes"), u"strYes"_s);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "&Yes"), u"&Yes"_s);
}

} // namespace
} // namespace tollivar::language
