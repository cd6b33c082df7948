#include "platform/ini_file.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using platform::iniSection;
using Values = QHash<QString, QString>;

TEST(IniSection, givesAllValuesByTheirKeysInLowerCase)
{
    EXPECT_EQ(iniSection(u"[One]\r\nA=1\r\nBee = two words \r\n", u"one"),
              (Values{{u"a"_s, u"1"_s}, {u"bee"_s, u"two words"_s}}));
}

TEST(IniSection, endsAtTheNextHeading)
{
    const QString text = u"A=0\n[one]\nA=1\n[two]\nA=2\nB=3\n[one]\nC=4"_s;
    EXPECT_EQ(iniSection(text, u"one"), (Values{{u"a"_s, u"1"_s}}));
    EXPECT_EQ(iniSection(text, u"TWO"), (Values{{u"a"_s, u"2"_s}, {u"b"_s, u"3"_s}}));
    EXPECT_EQ(iniSection(text, u"three"), Values());
}

TEST(IniSection, keepsTheFirstOfEqualKeys)
{
    EXPECT_EQ(iniSection(u"[s]\nkey=1\nKEY=2\n", u"s"), (Values{{u"key"_s, u"1"_s}}));
}

TEST(IniSection, passesOverCommentsAndLinesWithoutAKey)
{
    EXPECT_EQ(iniSection(u"[s]\n;a=1\n\nrubbish\nb=\n", u"s"), (Values{{u"b"_s, QString()}}));
}

TEST(IniSection, findsTheSameValuesAsReadingKeyByKey)
{
    EXPECT_EQ(iniSection(u"[s]\na=\"quoted\"\nb='x'\nc=a=b", u"s"),
              (Values{{u"a"_s, u"quoted"_s}, {u"b"_s, u"x"_s}, {u"c"_s, u"a=b"_s}}));
}

TEST(IniSection, takesAnyText)
{
    for (const QString &text : {QString(), u"["_s, u"[s"_s, u"[s]"_s, u"=\n="_s, u"]\n[\n"_s,
                                QString(1000, u'['), QString(1000, QChar(0))})
        EXPECT_EQ(iniSection(text, u"s"), Values());
}

} // namespace tollivar::test
