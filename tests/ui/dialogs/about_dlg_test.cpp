#include "platform/build_config.h"
#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/about_dlg.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

QString noText(const QString & /*section*/, const QString & /*control*/)
{
    return {};
}

QString textOf(const AboutDialog &dialog, const QString &name)
{
    return test::control<QLabel>(dialog, name)->text();
}

} // namespace

class AboutDialogTest : public ::testing::Test {
protected:
    void SetUp() override { test::useDefaultSkin(); }
};

TEST_F(AboutDialogTest, tellsVersionAndLicence)
{
    const AboutDialog dialog(nullptr, noText);
    EXPECT_EQ(textOf(dialog, u"textVersion"_s), u"Tollivar "_s + platform::build::kVersion);
    EXPECT_TRUE(textOf(dialog, u"textLicence"_s).contains(u"MIT"));
}

TEST_F(AboutDialogTest, tellsEveryLibraryWithVersionAndLicence)
{
    const AboutDialog dialog(nullptr, noText);
    const QString text = textOf(dialog, u"textLibraries"_s);
    EXPECT_TRUE(text.contains(u"Qt "_s + QString::fromLatin1(QT_VERSION_STR) + u" (LGPL 3)"_s))
        << text.toStdString();
    for (const platform::build::Library &library : platform::build::kLibraries) {
        EXPECT_FALSE(library.version.isEmpty()) << library.name.data();
        EXPECT_TRUE(
            text.contains(u"%1 %2 (%3)"_s.arg(library.name, library.version, library.licence)))
            << library.name.data();
    }
}

TEST_F(AboutDialogTest, showsEveryLineWhole)
{
    AboutDialog dialog(nullptr, noText);
    dialog.show();
    const auto *text = test::control<QLabel>(dialog, u"textLibraries"_s);
    EXPECT_GE(text->height(), text->heightForWidth(text->width()));
}

} // namespace tollivar::ui
