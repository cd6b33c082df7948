#include "ui/skin/skin_document.h"

#include <gtest/gtest.h>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

namespace {

SkinProblem problemOf(const QByteArray &xml)
{
    const auto read = readSkinDocument(xml, u"Some.xml"_s);
    EXPECT_FALSE(read) << xml.left(60).constData();
    return read ? SkinProblem{} : read.error();
}

QByteArray nested(int depth)
{
    return "<Window>" + QByteArray("<Container>").repeated(depth) +
           QByteArray("</Container>").repeated(depth) + "</Window>";
}

} // namespace

TEST(SkinDocument, keepsElementsAttributesAndLines)
{
    const auto read = readSkinDocument("<Window size=\"1,2\">\n <Button name=\"a\"/>\n\n"
                                       " <Text text=\"x &amp; y\"/>\n</Window>",
                                       u"Some.xml"_s);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->attribute(u"size"), u"1,2"_s);
    ASSERT_EQ(read->children.size(), 2U);
    EXPECT_EQ(read->children[0].type, u"Button"_s);
    EXPECT_EQ(read->children[0].line, 2);
    EXPECT_EQ(read->children[1].attribute(u"text"), u"x & y"_s);
    EXPECT_EQ(read->children[1].line, 4);
    EXPECT_EQ(read->children[1].attribute(u"missing"), QString());
}

TEST(SkinDocument, namesFileAndLineOfBrokenXml)
{
    const SkinProblem problem = problemOf("<Window>\n<Button>\n</Window>");
    EXPECT_EQ(problem.file, u"Some.xml"_s);
    EXPECT_EQ(problem.line, 3);
    EXPECT_TRUE(problem.toString().startsWith(u"Some.xml:3: "_s));
}

TEST(SkinDocument, refusesEveryOtherForm)
{
    problemOf("");
    problemOf("no markup");
    problemOf("<Dialog/>");
    problemOf("<Window/><Window/>trailing<");
    problemOf("<Window a='1' a='2'/>");
    problemOf("<!DOCTYPE w [<!ENTITY a '&b;&b;&b;'><!ENTITY b '&a;'>]><Window><Text "
              "text='&a;'/></Window>");
    problemOf(QByteArray("\xFF\xFE\x00\xD8", 4));
}

TEST(SkinDocument, refusesAMillionNestedElements)
{
    EXPECT_TRUE(readSkinDocument(nested(kMaximumSkinDepth - 1), u"a"_s));
    EXPECT_EQ(problemOf(nested(kMaximumSkinDepth)).text, u"elements are nested too deeply"_s);
    problemOf("<Window>" + QByteArray("<C>").repeated(1'000'000));
}

TEST(SkinDocument, refusesTooManyElementsAndTooLargeFiles)
{
    const QByteArray many =
        "<Window>" + QByteArray("<Control/>").repeated(kMaximumSkinElements) + "</Window>";
    EXPECT_EQ(problemOf(many).text, u"too many elements"_s);
    EXPECT_EQ(problemOf(QByteArray(kMaximumSkinFile + 1, ' ')).text, u"the file is too large"_s);
}

TEST(SkinDocument, survivesCutAndFlippedFiles)
{
    const QByteArray whole = "<Window size=\"1,2\"><HorizontalLayout><Button name=\"a\" "
                             "text=\"&#65;\"/></HorizontalLayout><!-- note --></Window>";
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(readSkinDocument(whole.left(length), u"a"_s));
        QByteArray flipped = whole;
        flipped[length] = static_cast<char>(flipped[length] ^ 0x20);
        static_cast<void>(readSkinDocument(flipped, u"a"_s));
    }
}

} // namespace tollivar::DuiLib
