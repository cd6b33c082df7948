#include "companions/capture/answer_length.h"

#include <QString>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using tollivar::capture::lengthOfAnswer;

TEST(AnswerLength, isTheContentLengthOfAWholeFile)
{
    EXPECT_EQ(lengthOfAnswer(u"", u"1000"), 1'000);
    EXPECT_EQ(lengthOfAnswer(u"", u" 7 "), 7);
    EXPECT_EQ(lengthOfAnswer(u"", u"0"), 0);
}

TEST(AnswerLength, isTheWholeFilesWhenAPartWasAnswered)
{
    EXPECT_EQ(lengthOfAnswer(u"bytes 0-0/5000000000", u"1"), 5'000'000'000);
}

TEST(AnswerLength, isUnknownWhenTheServerKeepsTheWholeToItself)
{
    EXPECT_EQ(lengthOfAnswer(u"bytes 0-9/*", u"10"), std::nullopt);
}

TEST(AnswerLength, isUnknownWhenItIsNoNumber)
{
    for (const QString &text : {u""_s, u"x"_s, u"-5"_s, u"1 000"_s, u"99999999999999999999"_s}) {
        EXPECT_EQ(lengthOfAnswer(u"", text), std::nullopt);
        EXPECT_EQ(lengthOfAnswer(QString(u"bytes 0-0/"_s + text), u"1"), std::nullopt);
    }
}
