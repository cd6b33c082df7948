#include "companions/pageprobe/html_tags.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::probe::decodeReferences;
using tollivar::probe::HtmlTag;
using tollivar::probe::readHtmlTags;

QString attributeOf(const QString &page, const QString &name)
{
    const auto tags = readHtmlTags(page);
    return tags.empty() ? u"no tag"_s : tags.front().attribute(name);
}

QStringList namesOf(const QString &page)
{
    QStringList names;
    for (const HtmlTag &tag : readHtmlTags(page)) {
        names.append(tag.name);
    }
    return names;
}

TEST(HtmlTags, areReadInOrderWithTheirNamesInLowerCase)
{
    EXPECT_EQ(namesOf(u"<HTML><body><Video src=x></video><p>text</p></body>"_s),
              (QStringList{u"html"_s, u"body"_s, u"video"_s, u"p"_s}));
}

TEST(HtmlTags, giveAttributesHoweverTheyAreQuoted)
{
    EXPECT_EQ(attributeOf(u"<a x=\"1 2\">"_s, u"x"_s), u"1 2");
    EXPECT_EQ(attributeOf(u"<a x='1 \"2\"'>"_s, u"x"_s), u"1 \"2\"");
    EXPECT_EQ(attributeOf(u"<a x=1>"_s, u"x"_s), u"1");
    EXPECT_EQ(attributeOf(u"<a\n  X \t=\n '1'\n/>"_s, u"x"_s), u"1");
    EXPECT_EQ(attributeOf(u"<a x=/1/2>"_s, u"x"_s), u"/1/2");
    EXPECT_EQ(attributeOf(u"<a x=\"a>b\" y=2>"_s, u"y"_s), u"2");
    EXPECT_EQ(attributeOf(u"<a controls y=2>"_s, u"y"_s), u"2");
}

TEST(HtmlTags, keepTheFirstOfEqualAttributes)
{
    EXPECT_EQ(attributeOf(u"<a x=1 x=2>"_s, u"x"_s), u"1");
}

TEST(HtmlTags, ofCommentsScriptsAndTextFieldsAreNone)
{
    EXPECT_EQ(namesOf(u"<!-- <video> --><p>"_s), QStringList{u"p"_s});
    EXPECT_EQ(namesOf(u"<script>'<video>'</script><p>"_s), (QStringList{u"script"_s, u"p"_s}));
    EXPECT_EQ(namesOf(u"<style>a{}<video></style><textarea><video></textarea><p>"_s),
              (QStringList{u"style"_s, u"textarea"_s, u"p"_s}));
    EXPECT_EQ(namesOf(u"a < b <3 <!doctype html> <?php ?> </p>"_s), QStringList());
}

TEST(HtmlTags, holdTheTextOfTitleAndScript)
{
    EXPECT_EQ(readHtmlTags(u"<title>A &amp; <b> B</TITLE>"_s).front().content, u"A &amp; <b> B");
    EXPECT_EQ(readHtmlTags(u"<script type=x>{\"a\":\"</b>\"}</script>"_s).front().content,
              u"{\"a\":\"</b>\"}");
}

TEST(HtmlTags, endWithThePageWhenNothingClosesThem)
{
    EXPECT_EQ(attributeOf(u"<video src=\"x"_s, u"src"_s), u"x");
    EXPECT_EQ(attributeOf(u"<video src=x"_s, u"src"_s), u"x");
    EXPECT_EQ(attributeOf(u"<video src="_s, u"src"_s), QString());
    EXPECT_EQ(namesOf(u"<video"_s), QStringList{u"video"_s});
    EXPECT_EQ(readHtmlTags(u"<title>x"_s).front().content, u"x");
    EXPECT_EQ(namesOf(u"<!-- <video>"_s), QStringList());
    EXPECT_EQ(namesOf(u"<"_s), QStringList());
}

TEST(HtmlTags, surviveStrayCharacters)
{
    EXPECT_EQ(attributeOf(u"<a = == =x / // y=2>"_s, u"y"_s), u"2");
    EXPECT_EQ(attributeOf(u"<a \"' <b y=2>"_s, u"y"_s), u"2");
    EXPECT_EQ(namesOf(u"<a<b>"_s).size(), 1);
}

TEST(HtmlTags, haveALimitInNumber)
{
    EXPECT_EQ(readHtmlTags(u"<a>"_s.repeated(300'000)).size(), 200'000U);
    QString page = u"<a"_s;
    for (int i = 0; i < 1'000; ++i) {
        page += u" x%1=1"_s.arg(i);
    }
    EXPECT_EQ(readHtmlTags(page).front().attributes.size(), 200U);
}

/// Any work in proportion to the square of these pages would take hours.
TEST(HtmlTags, takeTimeInProportionToThePage)
{
    for (const QString &piece :
         {u"<"_s, u"<!--"_s, u"<a "_s, u"<a x='"_s, u"<title>"_s, u"<script>"_s, u"&"_s,
          u"<a &amp"_s, u"=\"'"_s, u"<textarea></text"_s}) {
        const QString page = piece.repeated(1'000'000 / piece.size());
        static_cast<void>(readHtmlTags(page));
        EXPECT_LE(decodeReferences(page).size(), page.size());
    }
}

TEST(References, areDecodedByNameAndNumber)
{
    EXPECT_EQ(decodeReferences(u"a&amp;b&lt;&gt;&quot;&apos;"_s), u"a&b<>\"'");
    EXPECT_EQ(decodeReferences(u"&#65;&#x42;&#X1F600;"_s), u"AB😀");
    EXPECT_EQ(decodeReferences(u"Caf&eacute; &ndash; &Uuml;ber"_s), u"Café – Über");
    EXPECT_EQ(decodeReferences(u"&amp;amp;"_s), u"&amp;");
}

TEST(References, stayWhenTheyAreNone)
{
    for (const QString &text : {u"a&b=1&c"_s, u"&"_s, u"&;"_s, u"&#;"_s, u"&#x;"_s, u"&#0;"_s,
                                u"&#xD800;"_s, u"&#1114112;"_s, u"&#99999999999;"_s, u"&nosuch;"_s,
                                u"&averyveryverylongname;"_s, u"& amp;"_s, QString()}) {
        EXPECT_EQ(decodeReferences(text), text);
    }
}

} // namespace
