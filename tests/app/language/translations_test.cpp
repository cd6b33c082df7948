// The language files that the program comes with.

#include "app/language/languages.h"
#include "platform/ini_file.h"
#include "tests/support/sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace tollivar::language {

using namespace Qt::StringLiterals;

namespace {

QString folder()
{
    return QStringLiteral(TOLLIVAR_LANGUAGES);
}

platform::IniFile fileOf(const QString &name)
{
    return platform::IniFile(folder() + u'/' + name);
}

const QStringList &sections()
{
    static const QStringList names{
        u"STRING"_s,          u"IDR_MENU_HELP"_s,     u"IDR_MENU_LIST"_s,   u"IDR_MENU_TRAY"_s,
        u"DIALOG_ADDTASK"_s,  u"DIALOG_CONFIRMDEL"_s, u"DIALOG_SETTINGS"_s, u"DIALOG_NOTIFY"_s,
        u"DIALOG_REMINDER"_s, u"DIALOG_ABOUT"_s,      u"DIALOG_CHECKING"_s};
    return names;
}

QStringList keysOf(const QHash<QString, QString> &section)
{
    QStringList keys = section.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

/// The marks of a text that the program reads, one after the other in alphabetical order.
QStringList marksOf(const QString &text)
{
    QStringList marks;
    for (const auto &mark : {u"%1"_s, u"%2"_s, u"{/a}"_s, u"{/b}"_s, u"{a}"_s, u"{b}"_s}) {
        marks += QStringList(text.count(mark), mark);
    }
    return marks;
}

} // namespace

class Translations : public ::testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(All, Translations,
                         ::testing::Values("Dutch", "French", "German", "Italian", "Japanese",
                                           "Polish", "Portuguese", "Russian", "SimplifiedChinese",
                                           "Spanish"),
                         [](const auto &language) { return std::string(language.param); });

TEST_P(Translations, haveEveryKeyOfTheEnglishFileWithItsMarks)
{
    const platform::IniFile file = fileOf(QString::fromLatin1(GetParam()) + u".ini"_s);
    const platform::IniFile english = fileOf(u"English.ini"_s);
    for (const QString &section : sections()) {
        const auto expected = english.readSection(section);
        const auto translated = file.readSection(section);
        EXPECT_EQ(keysOf(translated), keysOf(expected)) << section.toStdString();
        for (const auto &[key, text] : translated.asKeyValueRange()) {
            EXPECT_FALSE(text.trimmed().isEmpty()) << key.toStdString();
            EXPECT_EQ(marksOf(text), marksOf(expected.value(key))) << key.toStdString();
        }
    }
}

TEST_P(Translations, putNoBlankBeforeAColonUnlessTheLanguageDoes)
{
    // The word stands behind another one and a blank.
    const platform::IniFile file = fileOf(QString::fromLatin1(GetParam()) + u".ini"_s);
    const bool startsWithColon = file.read(u"STRING", u"strFailed").startsWith(u':');
    EXPECT_EQ(startsWithColon, std::string_view(GetParam()) == "French");
}

TEST(TranslationFiles, areElevenAndAllAreFound)
{
    const test::Sandbox sandbox;
    const settings::SettingsStore settings(sandbox.file(u"settings.ini"_s));
    Languages languages(settings, folder());
    languages.load();
    EXPECT_EQ(languages.names().size(), 11);
    EXPECT_EQ(QDir(folder()).entryList({u"*.ini"_s}).size(), 11);
}

TEST(TranslationFiles, theEnglishOneHasEveryTextAndNoOther)
{
    const auto strings = fileOf(u"English.ini"_s).readSection(u"STRING");
    EXPECT_EQ(strings.size(), static_cast<qsizetype>(builtInTexts().size()));
    for (const auto &text : builtInTexts()) {
        EXPECT_TRUE(strings.contains(text.id.toString().toLower()))
            << text.id.toString().toStdString();
    }
}

TEST(TranslationFiles, theEnglishOneSaysWhatIsBuiltIn)
{
    const platform::IniFile file = fileOf(u"English.ini"_s);
    const auto strings = file.readSection(u"STRING");
    for (const auto &text : builtInTexts()) {
        // A language file cannot hold a backslash.
        QString english = text.english.toString();
        english.remove(u"\\ "_s);
        EXPECT_EQ(unescaped(strings.value(text.id.toString().toLower())).trimmed(),
                  english.trimmed());
    }
    int position = 0;
    for (const MenuEntry &entry : helpMenu().entries) {
        const QString key = menuKey(entry, position++);
        if (entry.kind != MenuEntry::Kind::Separator) {
            EXPECT_EQ(file.read(u"IDR_MENU_HELP", key), entry.english.toString());
        }
    }
}

} // namespace tollivar::language
