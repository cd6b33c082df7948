#include "app/language/languages.h"
#include "platform/ini_file.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tollivar::language {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class LanguagesTest : public ::testing::Test {
protected:
    void write(const QString &file, const QString &text) const
    {
        // As the files are: UTF-16LE with its mark.
        QByteArray bytes("\xFF\xFE", 2);
        bytes.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
        m_sandbox.write(u"Language/"_s + file, bytes);
    }

    Languages load(const QString &chosen = {})
    {
        m_settings.SetLanguage(chosen);
        Languages languages(m_settings, m_sandbox.file(u"Language"_s));
        languages.load();
        return languages;
    }

    test::Sandbox m_sandbox;
    settings::SettingsStore m_settings{m_sandbox.file(u"settings.ini"_s)};
};

TEST_F(LanguagesTest, withoutFilesEveryTextIsEnglish)
{
    const Languages languages = load(u"Deutsch"_s);
    EXPECT_TRUE(languages.names().isEmpty());
    EXPECT_EQ(languages.current(), QString());
    EXPECT_EQ(languages.text(u"strMore"_s), u"More>>"_s);
    EXPECT_EQ(languages.text(u"strMsgInvalidFolder"_s),
              u"Invaild Folder Path, please select a valid location to save file."_s);
    EXPECT_EQ(languages.dialogText(u"DIALOG_ADDTASK"_s, u"title"_s), QString());
}

TEST_F(LanguagesTest, anIdMissingFromTheFileKeepsItsEnglishText)
{
    write(u"a.ini"_s, u"[INFO]\r\nLanguage=Test\r\n[STRING]\r\nstrMore=Mehr\r\nstrLess=\r\n"_s);
    const Languages languages = load(u"Test"_s);
    EXPECT_EQ(languages.current(), u"Test"_s);
    EXPECT_EQ(languages.text(u"strMore"_s), u"Mehr"_s);
    EXPECT_EQ(languages.text(u"strLess"_s), u"Less<<"_s);
    EXPECT_EQ(languages.text(u"strOK"_s), u"OK"_s);
}

TEST_F(LanguagesTest, aFileCannotAddIds)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=Test\n[STRING]\nstrInvented=x\n"_s);
    EXPECT_EQ(load(u"Test"_s).text(u"strInvented"_s), u"strInvented"_s);
}

TEST_F(LanguagesTest, backslashesMakeLineEndsOrVanish)
{
    EXPECT_EQ(unescaped(u"one\\ntwo"_s), u"one\ntwo"_s);
    EXPECT_EQ(unescaped(u"one\\rtwo"_s), u"one\rtwo"_s);
    EXPECT_EQ(unescaped(u"a\\bc\\"_s), u"abc"_s);
    EXPECT_EQ(unescaped(u"\\\\n"_s), u"\n"_s);
    EXPECT_EQ(unescaped(QString(30'000, u'\\')), QString());
}

TEST_F(LanguagesTest, aFileWithoutALanguageIsNeverOffered)
{
    write(u"a.ini"_s, u"[INFO]\nName=x\n[STRING]\nstrMore=y\n"_s);
    write(u"b.ini"_s, u"[OTHER]\nLanguage=x\n"_s);
    m_sandbox.write(u"Language/c.txt"_s, "[INFO]\nLanguage=x\n");
    m_sandbox.write(u"Language/d.ini/e.ini"_s, "[INFO]\nLanguage=x\n");
    EXPECT_TRUE(load().names().isEmpty());
}

TEST_F(LanguagesTest, ofTwoFilesWithOneNameTheLaterCountsAndTheNameIsListedTwice)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=Test\n[STRING]\nstrMore=first\n"_s);
    write(u"b.ini"_s, u"[INFO]\nLanguage=Test\n[STRING]\nstrMore=second\n"_s);
    const Languages languages = load(u"Test"_s);
    EXPECT_THAT(languages.names(), ElementsAre(u"Test"_s, u"Test"_s));
    EXPECT_EQ(languages.text(u"strMore"_s), u"second"_s);
}

TEST_F(LanguagesTest, anotherLanguageIsAppliedAtOnceAndRemembered)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n[STRING]\nstrMore=a\nstrLess=a\n"_s);
    write(u"b.ini"_s, u"[INFO]\nLanguage=B\n[STRING]\nstrMore=b\n"_s);
    Languages languages = load(u"A"_s);
    languages.apply(u"B"_s);
    EXPECT_EQ(languages.text(u"strMore"_s), u"b"_s);
    EXPECT_EQ(languages.text(u"strLess"_s), u"Less<<"_s);
    EXPECT_EQ(m_settings.GetLanguage(), u"B"_s);
    languages.apply(u"unknown"_s);
    EXPECT_EQ(languages.current(), u"B"_s);
    EXPECT_EQ(m_settings.GetLanguage(), u"B"_s);
}

TEST_F(LanguagesTest, menusAndDialogsHaveSectionsOfTheirOwn)
{
    write(u"a.ini"_s,
          u"[INFO]\nLanguage=A\n[IDR_MENU_TRAY]\n32783=Ende\n[IDR_MENU_HELP]\nPOP_1=Sprache\n"
          u"[DIALOG_ADDTASK]\ntitle=Neu\nbtnCancel=zwei\\nZeilen\n"_s);
    const Languages languages = load(u"A"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_TRAY"_s, u"32783"_s), u"Ende"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_HELP"_s, u"POP_1"_s), u"Sprache"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_LIST"_s, u"32783"_s), QString());
    EXPECT_EQ(languages.dialogText(u"DIALOG_ADDTASK"_s, u"title"_s), u"Neu"_s);
    EXPECT_EQ(languages.dialogText(u"DIALOG_ADDTASK"_s, u"btnCancel"_s), u"zwei\nZeilen"_s);
    EXPECT_EQ(languages.dialogText(u"DIALOG_OTHER"_s, u"title"_s), QString());
}

TEST_F(LanguagesTest, aMenusTemplateHoldsItsPresentTexts)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n"_s);
    const Languages languages = load(u"A"_s);
    EXPECT_TRUE(languages.writeTemplate(trayMenu()));
    const platform::IniFile file(m_sandbox.file(u"Language/a.ini"_s));
    EXPECT_EQ(file.read(u"IDR_MENU_TRAY", u"32780"), u"Open/Hide Window"_s);
    EXPECT_EQ(file.read(u"IDR_MENU_TRAY", u"32783"), u"Exit"_s);
    EXPECT_EQ(file.readSection(u"IDR_MENU_TRAY").size(), 5);
}

TEST_F(LanguagesTest, aTemplateKeepsWhatIsTranslatedAlready)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n[IDR_MENU_TRAY]\n32783=Ende\n"
                      u"[IDR_MENU_HELP]\nPOP_1=Sprache\n"_s);
    const Languages languages = load(u"A"_s);
    EXPECT_TRUE(languages.writeTemplate(trayMenu()));
    EXPECT_TRUE(languages.writeTemplate(helpMenu()));
    const platform::IniFile file(m_sandbox.file(u"Language/a.ini"_s));
    EXPECT_EQ(file.read(u"IDR_MENU_TRAY", u"32783"), u"Ende"_s);
    EXPECT_EQ(file.read(u"IDR_MENU_TRAY", u"32780"), u"Open/Hide Window"_s);
    EXPECT_EQ(file.read(u"IDR_MENU_HELP", u"POP_1"), u"Sprache"_s);
}

TEST_F(LanguagesTest, aTemplateHoldsAtMost1024CharactersOfAnEntry)
{
    write(u"a.ini"_s,
          u"[INFO]\nLanguage=A\n[IDR_MENU_TRAY]\n32783="_s + QString(5'000, u'x') + u'\n');
    const Languages languages = load(u"A"_s);
    EXPECT_TRUE(languages.writeTemplate(trayMenu()));
    const platform::IniFile file(m_sandbox.file(u"Language/a.ini"_s));
    EXPECT_EQ(file.read(u"IDR_MENU_TRAY", u"32783"), QString(1'024, u'x'));
}

TEST_F(LanguagesTest, withoutALanguageNoTemplateIsWritten)
{
    const Languages languages = load();
    EXPECT_FALSE(languages.writeTemplate(trayMenu()));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"Language"_s)));
}

TEST_F(LanguagesTest, aMenuTextStandsAsItIsInTheFile)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n[IDR_MENU_LIST]\n32797=a\\nb\n32793=\n"_s);
    const Languages languages = load(u"A"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_LIST"_s, u"32797"_s), u"a\\nb"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_LIST"_s, u"32793"_s), QString());
}

TEST_F(LanguagesTest, menuAndDialogTextsOfTheLastLanguageAreForgotten)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n[IDR_MENU_TRAY]\n32783=Ende\n"
                      u"[DIALOG_ADDTASK]\ntitle=Neu\n"_s);
    write(u"b.ini"_s, u"[INFO]\nLanguage=B\n"_s);
    Languages languages = load(u"A"_s);
    EXPECT_EQ(languages.dialogText(u"DIALOG_ADDTASK"_s, u"title"_s), u"Neu"_s);
    languages.apply(u"B"_s);
    EXPECT_EQ(languages.menuText(u"IDR_MENU_TRAY"_s, u"32783"_s), QString());
    EXPECT_EQ(languages.dialogText(u"DIALOG_ADDTASK"_s, u"title"_s), QString());
}

TEST_F(LanguagesTest, loadingAgainFindsWhatIsThereNow)
{
    write(u"a.ini"_s, u"[INFO]\nLanguage=A\n[STRING]\nstrMore=a\n"_s);
    Languages languages = load(u"A"_s);
    ASSERT_TRUE(QFile::remove(m_sandbox.file(u"Language/a.ini"_s)));
    write(u"b.ini"_s, u"[INFO]\nLanguage=B\n"_s);
    languages.load();
    EXPECT_THAT(languages.names(), ElementsAre(u"B"_s));
    EXPECT_EQ(languages.current(), QString());
    EXPECT_EQ(languages.text(u"strMore"_s), u"More>>"_s);
}

TEST_F(LanguagesTest, ofTenThousandFilesTheFirstFiveHundredByNameAreOffered)
{
    for (int file = 0; file < 10'000; ++file) {
        m_sandbox.write(u"Language/%1.ini"_s.arg(file, 5, 10, QLatin1Char('0')),
                        "[INFO]\nLanguage=" + QByteArray::number(file) + '\n');
    }
    const Languages languages = load(u"499"_s);
    ASSERT_EQ(languages.names().size(), 500);
    EXPECT_EQ(languages.names().front(), u"0"_s);
    EXPECT_EQ(languages.current(), u"499"_s);
}

TEST_F(LanguagesTest, aFileCutOrDamagedAnywhereStillLoads)
{
    QByteArray good("\xFF\xFE", 2);
    const QString text = u"[INFO]\r\nLanguage=Test\r\n[STRING]\r\nstrMore=a\\nb\r\n"
                         u"[IDR_MENU_TRAY]\r\n32783=Ende\r\n"_s;
    good.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    m_settings.SetLanguage(u"Test"_s);
    for (qsizetype place = 0; place < good.size(); ++place) {
        QByteArray flipped = good;
        flipped[place] = static_cast<char>(flipped[place] ^ 0x20);
        for (const QByteArray &bytes : {good.first(place), flipped}) {
            m_sandbox.write(u"Language/a.ini"_s, bytes);
            Languages languages(m_settings, m_sandbox.file(u"Language"_s));
            languages.load();
            EXPECT_LE(languages.names().size(), 1);
            EXPECT_FALSE(languages.text(u"strMore"_s).isEmpty()) << "at byte " << place;
            EXPECT_FALSE(languages.text(u"strMore"_s).contains(u'\\')) << "at byte " << place;
        }
    }
}

TEST_F(LanguagesTest, hostileFilesDoNoHarm)
{
    m_sandbox.write(u"Language/huge.ini"_s, QByteArray(2 * 1024 * 1024, 'x'));
    m_sandbox.write(u"Language/odd.ini"_s, QByteArray("\xFF\xFE[\x00I", 5));
    m_sandbox.write(u"Language/binary.ini"_s, QByteArray(5'000, '\xD8'));
    m_sandbox.write(u"Language/long.ini"_s, "[INFO]\nLanguage=" + QByteArray(100'000, 'L') + '\n');
    m_sandbox.write(u"Language/marks.ini"_s, "[INFO]\nLanguage=a\tb\x01\n");
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, m_sandbox.file(u"Language/zero.ini"_s)));
    const Languages languages = load();
    for (const QString &name : languages.names()) {
        EXPECT_LE(name.size(), 64);
        EXPECT_FALSE(name.contains(u'\x01'));
    }
}

} // namespace tollivar::language
