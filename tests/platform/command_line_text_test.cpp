#include "platform/command_line_text.h"

#include <random>

namespace {

using namespace Qt::StringLiterals;
using tollivar::platform::joinCommandLine;
using tollivar::platform::splitCommandLine;

TEST(SplitCommandLine, followsTheQuotingRules)
{
    struct Case {
        const char *rule;
        QString line;
        QStringList arguments;
    };
    const std::vector<Case> cases = {
        {"nothing", u""_s, {}},
        {"only blanks", u" \t "_s, {}},
        {"blanks and tabs part", u"p  a\tb \t c "_s, {u"p"_s, u"a"_s, u"b"_s, u"c"_s}},
        {"blanks in front are skipped", u"  p a"_s, {u"p"_s, u"a"_s}},
        {"quotes keep together", u"p \"a b\" c"_s, {u"p"_s, u"a b"_s, u"c"_s}},
        {"quotes in the middle", u"p a\" \"b c"_s, {u"p"_s, u"a b"_s, u"c"_s}},
        {"an empty argument", u"p \"\" a"_s, {u"p"_s, QString(), u"a"_s}},
        {"a line feed parts nothing", u"p a\nb"_s, {u"p"_s, u"a\nb"_s}},
        {"backslashes are themselves", u"p \\a\\\\b\\ c"_s, {u"p"_s, u"\\a\\\\b\\"_s, u"c"_s}},
        {"odd backslashes escape a quote", u"p a\\\"b"_s, {u"p"_s, u"a\"b"_s}},
        {"three backslashes", u"p a\\\\\\\"b c"_s, {u"p"_s, u"a\\\"b"_s, u"c"_s}},
        {"even backslashes do not", u"p a\\\\\"b c\""_s, {u"p"_s, u"a\\b c"_s}},
        {"before a closing quote", u"p \"a\\\\\" b"_s, {u"p"_s, u"a\\"_s, u"b"_s}},
        {"two quotes inside are one", u"p \"a\"\"b\" c"_s, {u"p"_s, u"a\"b"_s, u"c"_s}},
        {"two quotes outside are none", u"p a\"\"b c"_s, {u"p"_s, u"ab"_s, u"c"_s}},
        {"an unclosed quote", u"p \"a b"_s, {u"p"_s, u"a b"_s}},
        {"only an unclosed quote", u"p \""_s, {u"p"_s, QString()}},
        {"the name knows quotes", u"\"a b\\p.exe\" c"_s, {u"a b\\p.exe"_s, u"c"_s}},
        {"the name knows no escapes", u"\"a\\\" b"_s, {u"a\\"_s, u"b"_s}},
        {"an empty name", u"\"\" a"_s, {QString(), u"a"_s}},
        {"an unclosed name", u"\"a b"_s, {u"a b"_s}},
        {"no shell",
         u"p $x `y` *.z ; | & > <"_s,
         {u"p"_s, u"$x"_s, u"`y`"_s, u"*.z"_s, u";"_s, u"|"_s, u"&"_s, u">"_s, u"<"_s}},
    };
    for (const Case &each : cases) {
        EXPECT_EQ(splitCommandLine(each.line), each.arguments) << each.rule;
    }
}

TEST(JoinCommandLine, isUndoneBySplitting)
{
    const std::vector<QStringList> lists = {
        {},
        {u"p"_s},
        {QString()},
        {u"a b"_s, QString(), QString()},
        {u"C:\\dir\\p.exe"_s, u"\\"_s, u"\\\\"_s, u"\""_s, u"\\\""_s, u"\\\\\""_s, u"\"\""_s},
        {u"p"_s, u" "_s, u"\t"_s, u"a\\ b"_s, u"end\\"_s, u"ä€𝄞"_s, u"a\nb"_s},
    };
    for (const QStringList &list : lists) {
        EXPECT_EQ(splitCommandLine(joinCommandLine(list)), list) << qPrintable(list.join(u'|'));
    }
}

TEST(JoinCommandLine, isUndoneForEveryShortTextOfSpecialCharacters)
{
    const QString special = u"\\\" \ta"_s;
    // All texts of up to five of them: 5 + 25 + … + 3,125.
    QStringList texts = {QString()};
    for (qsizetype begin = 0; texts.back().size() < 5;) {
        const qsizetype end = texts.size();
        for (; begin < end; ++begin) {
            for (const QChar character : special) {
                texts.append(texts[begin] + character);
            }
        }
    }
    ASSERT_EQ(texts.size(), 3'906);
    for (const QString &text : texts) {
        const QStringList list = {u"p"_s, text, u"next"_s};
        ASSERT_EQ(splitCommandLine(joinCommandLine(list)), list) << qPrintable(text);
    }
}

TEST(SplitCommandLine, survivesEveryTextAndIsStable)
{
    // 20,000 random lines, the same ones every time.
    std::minstd_rand random(20);
    const QString characters = QString(u"\\\" \tab"_s) + QChar(QChar::Null) + QChar(0xD800);
    for (int i = 0; i < 20'000; ++i) {
        QString line;
        for (auto length = random() % 24; length > 0; --length) {
            line += characters[static_cast<qsizetype>(random() % 8)];
        }
        QStringList once = splitCommandLine(line);
        if (!once.isEmpty()) {
            once.front().remove(u'"');
        }
        ASSERT_EQ(splitCommandLine(joinCommandLine(once)), once) << qPrintable(line);
    }
}

} // namespace
