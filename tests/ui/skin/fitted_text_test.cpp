#include "ui/skin/fitted_text.h"

#include <QFontMetrics>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

namespace {

int widthOf(const QString &text)
{
    return QFontMetrics(QGuiApplication::font()).horizontalAdvance(text);
}

QStringList fitted(const QString &text, int width)
{
    return fittedLines(text, QGuiApplication::font(), width, 2);
}

} // namespace

TEST(FittedLines, aShortTextStaysAsItIs)
{
    EXPECT_EQ(fitted(u"a clip.mp4"_s, 300), QStringList{u"a clip.mp4"_s});
    EXPECT_EQ(fitted({}, 300), QStringList{QString()});
}

TEST(FittedLines, breaksBetweenWords)
{
    const int width = widthOf(u"an evening of"_s) + 2;
    EXPECT_EQ(fitted(u"an evening of music"_s, width),
              (QStringList{u"an evening of"_s, u"music"_s}));
}

TEST(FittedLines, breaksAWordThatHasNoRoom)
{
    const QString word(30, u'a');
    const QStringList lines = fitted(word, widthOf(word) * 2 / 3);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.join(QString()), word);
}

TEST(FittedLines, leavesOutTheMiddleOfWhatIsTooLong)
{
    const int width = 200;
    for (const QString &text : {u"begin "_s + QString(400, u'm') + u" end"_s,
                                u"begin "_s + u"word "_s.repeated(80) + u"end"_s,
                                u"begin "_s + QString(100'000, u'x') + u" end"_s}) {
        const QStringList lines = fitted(text, width);
        ASSERT_EQ(lines.size(), 2) << text.size();
        EXPECT_TRUE(lines.front().startsWith(u"begin"_s));
        EXPECT_TRUE(lines.back().endsWith(u"end"_s));
        EXPECT_TRUE(lines.join(QString()).contains(QChar(0x2026)));
        for (const QString &line : lines) {
            EXPECT_LE(widthOf(line), width);
        }
    }
}

TEST(FittedLines, aTextWithoutRoomStillEnds)
{
    EXPECT_FALSE(fitted(u"some words of no use"_s, 0).isEmpty());
    EXPECT_FALSE(fitted(u"line\nbreak"_s, 300).join(QString()).contains(u'\n'));
}

} // namespace tollivar::DuiLib
