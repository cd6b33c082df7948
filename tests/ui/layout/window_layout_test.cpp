#include "platform/ini_file.h"
#include "tests/support/sandbox.h"
#include "ui/layout/window_layout.h"

#include <QPushButton>
#include <QWidget>

#include <gtest/gtest.h>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;

const QString kSection = u"DIALOG_CONFIRMDEL"_s;
const QString kFonts = u"DIALOG_CONFIRMDEL_FONT"_s;

/// A window with one control that has a name.
class WindowLayout : public ::testing::Test {
protected:
    struct Window {
        QWidget face;
        QPushButton *button = new QPushButton(&face);
    };

    void SetUp() override { setLayoutMode(LayoutMode::Restore); }
    void TearDown() override { setLayoutMode(LayoutMode::Ignore); }

    static std::unique_ptr<Window> makeWindow()
    {
        auto window = std::make_unique<Window>();
        window->face.resize(200, 100);
        window->button->setObjectName(u"btnOK"_s);
        window->button->setGeometry(10, 20, 80, 24);
        return window;
    }
    void restore(Window &window) const { restoreLayout(window.face, kSection, m_path); }

    test::Sandbox m_sandbox;
    QString m_path = m_sandbox.file(u"layout.ini"_s);
    platform::IniFile m_file{m_path};
};

TEST_F(WindowLayout, windowAndControlsAreStoredAsRectanglesUnderTheirNumbers)
{
    const auto window = makeWindow();
    saveLayout(window->face, kSection, m_path);
    EXPECT_EQ(m_file.read(kSection, kSection), u"0 0 200 100"_s);
    EXPECT_EQ(m_file.read(kSection, u"0"_s), u"10 20 90 44"_s);
}

TEST_F(WindowLayout, aFontIsStoredAsThirteenNumbersAndAFace)
{
    const auto window = makeWindow();
    QFont font(u"Some Face"_s);
    font.setPixelSize(13);
    font.setWeight(QFont::Bold);
    font.setItalic(true);
    window->button->setFont(font);
    saveLayout(window->face, kSection, m_path);
    EXPECT_EQ(m_file.read(kFonts, u"0"_s), u"-13,0,0,0,700,1,0,0,1,0,0,0,0"_s);
    EXPECT_EQ(m_file.read(kFonts, u"0_FaceName"_s), u"Some Face"_s);
}

TEST_F(WindowLayout, whatWasStoredReturns)
{
    const auto first = makeWindow();
    first->face.resize(320, 240);
    first->button->resize(120, 30);
    QFont font(u"Some Face"_s);
    font.setPixelSize(17);
    first->button->setFont(font);
    saveLayout(first->face, kSection, m_path);
    const auto second = makeWindow();
    restore(*second);
    EXPECT_EQ(second->face.size(), QSize(320, 240));
    EXPECT_EQ(second->button->minimumSize(), QSize(120, 30));
    EXPECT_EQ(second->button->font().family(), u"Some Face"_s);
    EXPECT_EQ(second->button->font().pixelSize(), 17);
}

TEST_F(WindowLayout, onlyTheModeForItRestoresAnything)
{
    setLayoutMode(LayoutMode::Ignore);
    ASSERT_TRUE(m_file.write(kSection, kSection, u"0 0 320 240"_s));
    const auto window = makeWindow();
    restore(*window);
    EXPECT_EQ(window->face.size(), QSize(200, 100));
}

TEST_F(WindowLayout, onlyTwoIsTheModeForIt)
{
    EXPECT_EQ(layoutModeOf(2), LayoutMode::Restore);
    for (const int number : {0, 1, 3, -2, 22}) {
        EXPECT_EQ(layoutModeOf(number), LayoutMode::Ignore) << number;
    }
}

TEST_F(WindowLayout, absurdAndMalformedEntriesArePassedOver)
{
    for (const QString &stored :
         {u""_s, u"0 0 320"_s, u"0 0 320 240 7"_s, u"0 0 wide 240"_s, u"0 0 99999999 240"_s,
          u"0 0 -320 -240"_s, u"0 0 0 0"_s, u"0 0 4294967616 240"_s, u"-2147483648 0 320 240"_s}) {
        ASSERT_TRUE(m_file.write(kSection, kSection, stored));
        const auto window = makeWindow();
        restore(*window);
        EXPECT_EQ(window->face.size(), QSize(200, 100)) << stored.toStdString();
    }
    for (const QString &stored :
         {u"-13,0,0"_s, u"-99999,0,0,0,400,0,0,0,1,0,0,0,0"_s, u"-13,0,0,0,0,0,0,0,1,0,0,0,0"_s,
          u"-2147483648,0,0,0,400,0,0,0,1,0,0,0,0"_s, u"13,0,0,0,400,0,0,0,1,0,0,0,0,0"_s}) {
        ASSERT_TRUE(m_file.write(kFonts, u"0"_s, stored));
        ASSERT_TRUE(m_file.write(kFonts, u"0_FaceName"_s, u"Some Face"_s));
        const auto window = makeWindow();
        restore(*window);
        EXPECT_NE(window->button->font().family(), u"Some Face"_s) << stored.toStdString();
    }
}

TEST_F(WindowLayout, aFileThatCannotBeWrittenDoesNoHarm)
{
    const QString nowhere = m_sandbox.file(u"missing/layout.ini"_s);
    const auto window = makeWindow();
    saveLayout(window->face, kSection, nowhere);
    EXPECT_FALSE(QFile::exists(nowhere));
}

} // namespace
} // namespace tollivar::ui
