#include "fetch/text/file_naming.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

struct NameRow {
    const char *name;
    QString title;
    QString expected;
};

void PrintTo(const NameRow &row, std::ostream *out)
{
    *out << row.name;
}

class CleanNameRows : public ::testing::TestWithParam<NameRow> {};

TEST_P(CleanNameRows, makesAFileNameOfATitle)
{
    EXPECT_EQ(cleanName(GetParam().title, u' '), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Titles, CleanNameRows,
    ::testing::Values(
        NameRow{"keepsBlanksInside", QStringLiteral("Hello World"), QStringLiteral("Hello World")},
        NameRow{"thinsOutBehindTheFirstCharacter", QStringLiteral("A fine clip"),
                QStringLiteral("Afine clip")},
        NameRow{"ofTwoDashesOneSurvives", QStringLiteral("a--b"), QStringLiteral("a-b")},
        NameRow{"ofFourDashesTwoSurvive", QStringLiteral("a----b"), QStringLiteral("a--b")},
        NameRow{"keepsANumberPrefix", QStringLiteral("123-News"), QStringLiteral("123-News")},
        NameRow{"onlyForbidden", QStringLiteral("\\/:*?\"<>|"), QStringLiteral("ReNamed")},
        NameRow{"onlyControls", QStringLiteral("\x01\x02\n"), QStringLiteral("ReNamed")},
        NameRow{"empty", QString(), QStringLiteral("ReNamed")},
        NameRow{"deviceNameInAnyCase", QStringLiteral("CoN"), QStringLiteral("ReNamed")},
        NameRow{"endsWithALetter", QStringLiteral("Really?! ..."), QStringLiteral("Really")},
        NameRow{"leavesNoFolder", QStringLiteral("../../etc/passwd"),
                QStringLiteral(". .etc passwd")},
        NameRow{"lettersOfAnyScript", QStringLiteral("Привет, мир"), QStringLiteral("Привет, мир")},
        NameRow{"dropsDirectionMarks", QStringLiteral("clip\u202Egnp.exe"),
                QStringLiteral("clipgnp.exe")}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(CleanName, isCutTo80CharactersBeforeItIsTrimmed)
{
    EXPECT_EQ(cleanName(QString(200, u'x'), u' ').size(), 80);
    EXPECT_EQ(cleanName(QString(78, u'x') + QStringLiteral("  yyyy"), u' '), QString(78, u'x'));
}

TEST(CleanName, neverSplitsASurrogatePair)
{
    const QString pair = QStringLiteral("\U0001F600");
    const QString name = cleanName(QString(79, u'x') + pair + pair, u' ');

    EXPECT_EQ(name, QString(79, u'x'));
}

TEST(FileNaming, everyForbiddenCharacterIsReplaced)
{
    EXPECT_EQ(withoutForbiddenCharacters(QStringLiteral("a\\b/c:d*e?f\"g<h>i|j"), u'-'),
              QStringLiteral("a-b-c-d-e-f-g-h-i-j"));
}

TEST(FileNaming, aNameFitsTheFileSystemWithEndingAndCounter)
{
    const QString name = fittingName(QString(300, QChar(0x4E2D)), QStringLiteral(".mp4"));

    EXPECT_LE((name + QStringLiteral("(9999).mp4")).toUtf8().size(), kMaximumNameBytes);
    EXPECT_EQ(fittingName(QStringLiteral("short"), QStringLiteral(".mp4")),
              QStringLiteral("short"));
}

class HarmlessTypeRows : public ::testing::TestWithParam<NameRow> {};

TEST_P(HarmlessTypeRows, canDoNoHarm)
{
    EXPECT_EQ(harmlessFileType(GetParam().title), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Types, HarmlessTypeRows,
    ::testing::Values(
        NameRow{"media", QStringLiteral(".mp4"), QStringLiteral(".mp4")},
        NameRow{"emptyStaysEmpty", QString(), QString()},
        NameRow{"program", QStringLiteral(".exe"), QStringLiteral(".exe.download")},
        NameRow{"script", QStringLiteral(".sh"), QStringLiteral(".sh.download")},
        NameRow{"shortcut", QStringLiteral(".desktop"), QStringLiteral(".desktop.download")},
        NameRow{"page", QStringLiteral(".HtMl"), QStringLiteral(".HtMl.download")},
        NameRow{"macros", QStringLiteral(".docm"), QStringLiteral(".docm.download")},
        NameRow{"hiddenByADot", QStringLiteral(".exe."), QStringLiteral(".exe.download")},
        NameRow{"hiddenByABlank", QStringLiteral(".exe "), QStringLiteral(".exe.download")},
        NameRow{"secondEnding", QStringLiteral(".mp4.exe"), QStringLiteral(".mp4.exe.download")},
        NameRow{"path", QStringLiteral("/../../.bashrc"), QStringLiteral(".-..-..-.bashrc")},
        NameRow{"control", QStringLiteral(".mp\n4"), QStringLiteral(".mp4")},
        NameRow{"withoutDot", QStringLiteral("mp4"), QStringLiteral(".mp4")},
        NameRow{"onlyDots", QStringLiteral("..."), QString()}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(HarmlessType, anOverLongOneIsCut)
{
    EXPECT_LE(harmlessFileType(QLatin1Char('.') + QString(10'000, u'a')).size(), 32);
}

} // namespace
} // namespace tollivar::fetch
