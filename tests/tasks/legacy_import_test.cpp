#include "tasks/legacy_import.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::parseOldTask;
using tasks::parseOldTasks;
using tasks::TaskInfo;

/// Texts of 3, 2, 1, 4, 4, 0, 0, 0 characters, the record's numbers, texts of 1 to 12 characters,
/// the three second counts.
const QString kLengths = u"3 2 1 4 4 0 0 0 4321 1234 0 1 26 1 2 3 4 5 6 7 8 9 10 11 12 7 3 20"_s;
const QString kTexts = u"uridu/name.avi"_s + u"AbbCCCddddEEEEEffffffGGGGGGG"_s +
                       u"hhhhhhhhIIIIIIIIIjjjjjjjjjjKKKKKKKKKKKllllllllllll"_s;

TEST(OldTask, isCutApartByItsNumbers)
{
    const std::optional<TaskInfo> task = parseOldTask(kLengths, kTexts);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOriURL, u"uri"_s);
    EXPECT_EQ(task->strDownloadUrl, u"du"_s);
    EXPECT_EQ(task->strOutputFolder, u"/"_s);
    EXPECT_EQ(task->strOutputName, u"name"_s);
    EXPECT_EQ(task->strFileType, u".avi"_s);
    EXPECT_EQ(task->strCookies + task->strAgent + task->strReferer, QString());
    EXPECT_EQ(task->dwSize, 4321U);
    EXPECT_EQ(task->dwDownloadSize, 1234U);
    EXPECT_EQ(task->bAutoRename, 0);
    EXPECT_EQ(task->bFileCreated, 1);
    EXPECT_EQ(task->nModeLow, 6);
    EXPECT_EQ(task->nModeHigh, 2);
    EXPECT_EQ(task->m_ConvOpts.m_csAudioBitRateOpts, u"A"_s);
    EXPECT_EQ(task->m_ConvOpts.m_csAudioChannelOpts, u"bb"_s);
    EXPECT_EQ(task->m_ConvOpts.m_csAudioCodecOpts, u"CCC"_s);
    EXPECT_EQ(task->m_ConvOpts.m_csAudioSampleRateOpts, u"dddd"_s);
    EXPECT_EQ(task->m_ConvOpts.m_csConvParam, QString(5, u'E'));
    EXPECT_EQ(task->m_ConvOpts.m_csOutputName, QString(6, u'f'));
    EXPECT_EQ(task->m_ConvOpts.m_csProfileName, QString(7, u'G'));
    EXPECT_EQ(task->m_ConvOpts.m_csType, QString(8, u'h'));
    EXPECT_EQ(task->m_ConvOpts.m_csVideoBitRateOpts, QString(9, u'I'));
    EXPECT_EQ(task->m_ConvOpts.m_csVideoCodecOpts, QString(10, u'j'));
    EXPECT_EQ(task->m_ConvOpts.m_csVideoFrameRateOpts, QString(11, u'K'));
    EXPECT_EQ(task->m_ConvOpts.m_csVideoSizeOpts, QString(12, u'l'));
    EXPECT_EQ(task->m_ConvOpts.m_nLengthSeconds, 7);
    EXPECT_EQ(task->m_ConvOpts.m_nStartSeconds, 3);
    EXPECT_EQ(task->m_ConvOpts.m_nTotalSeconds, 20);
    EXPECT_EQ(task->nProtocol, 1);
    EXPECT_EQ(task->strApp + task->strFlashVer + task->strSwfUrl + task->strTcUrl +
                  task->strPageUrl + task->strPlayPath,
              QString());
    EXPECT_EQ(task->nCompletedStatus, 0);
}

TEST(OldTask, countsCharactersInUtf16Units)
{
    const QString lengths = u"2 1"_s + u" 0"_s.repeated(26);
    const std::optional<TaskInfo> task = parseOldTask(lengths, u"\U0001F600é");
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOriURL, u"\U0001F600"_s);
    EXPECT_EQ(task->strDownloadUrl, u"é"_s);
}

TEST(OldTask, needsTwentyEightNumbers)
{
    EXPECT_TRUE(parseOldTask(u"0 "_s.repeated(28), {}));
    EXPECT_TRUE(parseOldTask(u"0 "_s.repeated(28) + u"and more"_s, {}));
    EXPECT_FALSE(parseOldTask(u"0 "_s.repeated(27), {}));
    EXPECT_FALSE(parseOldTask(u"0 "_s.repeated(27) + u"x"_s, {}));
    EXPECT_FALSE(parseOldTask(u"0 "_s.repeated(13) + u"x "_s + u"0 "_s.repeated(14), {}));
    EXPECT_FALSE(parseOldTask({}, kTexts));
    EXPECT_FALSE(parseOldTask(u"- 1 2"_s, kTexts));
    EXPECT_FALSE(parseOldTask(u"1,2,3"_s, kTexts));
}

TEST(OldTask, clipsALengthThatRunsPastTheEnd)
{
    const QString lengths = u"2 999999999999 5"_s + u" 0"_s.repeated(25);
    const std::optional<TaskInfo> task = parseOldTask(lengths, u"abcdef");
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOriURL, u"ab"_s);
    EXPECT_EQ(task->strDownloadUrl, u"cdef"_s);
    EXPECT_EQ(task->strOutputFolder, QString());
}

TEST(OldTask, takesANegativeLengthForNone)
{
    const QString lengths = u"-3 2 -2147483648"_s + u" 0"_s.repeated(25);
    const std::optional<TaskInfo> task = parseOldTask(lengths, u"abcdef");
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOriURL, QString());
    EXPECT_EQ(task->strDownloadUrl, u"ab"_s);
    EXPECT_EQ(task->strOutputFolder, QString());
}

TEST(OldTask, isCompletedWhenItsFileIsThereWhole)
{
    const auto statusOf = [](const QString &size, const QString &downloaded,
                             const QString &created) {
        const QString lengths =
            u"0 0 0 0 0 0 0 0 %1 %2 1 %3"_s.arg(size, downloaded, created) + u" 0"_s.repeated(16);
        return parseOldTask(lengths, {})->nCompletedStatus;
    };
    EXPECT_EQ(statusOf(u"100"_s, u"100"_s, u"1"_s), 1);
    EXPECT_EQ(statusOf(u"100"_s, u"101"_s, u"5"_s), 1);
    EXPECT_EQ(statusOf(u"100"_s, u"99"_s, u"1"_s), 0);
    EXPECT_EQ(statusOf(u"100"_s, u"100"_s, u"0"_s), 0);
    EXPECT_EQ(statusOf(u"0"_s, u"0"_s, u"1"_s), 1);
    EXPECT_EQ(statusOf(u"-1"_s, u"100"_s, u"1"_s), 0);
    EXPECT_EQ(statusOf(u"-1"_s, u"2147483647"_s, u"1"_s), 0);
    EXPECT_EQ(statusOf(u"2147483647"_s, u"-2147483648"_s, u"1"_s), 1);
}

TEST(OldTasks, leaveOutATaskWithABadLineOfNumbers)
{
    const std::vector<TaskInfo> tasks = parseOldTasks(2, {{u"0_len"_s, u"1 2 oops"_s},
                                                          {u"0_string"_s, u"abc"_s},
                                                          {u"1_len"_s, kLengths},
                                                          {u"1_string"_s, kTexts}});
    ASSERT_EQ(tasks.size(), 1U);
    EXPECT_EQ(tasks.front().strOriURL, u"uri"_s);
}

TEST(OldTasks, comeInTheOrderOfTheirNumbers)
{
    QHash<QString, QString> lines;
    for (int number = 0; number < 25; ++number) {
        lines.insert(u"%1_len"_s.arg(number), u"2"_s + u" 0"_s.repeated(27));
        lines.insert(u"%1_string"_s.arg(number), u"%1"_s.arg(number, 2));
    }
    const std::vector<TaskInfo> tasks = parseOldTasks(25, lines);
    ASSERT_EQ(tasks.size(), 25U);
    for (int number = 0; number < 25; ++number) {
        EXPECT_EQ(tasks[static_cast<std::size_t>(number)].strOriURL, u"%1"_s.arg(number, 2));
    }
}

TEST(OldTasks, endAtTheCount)
{
    const QHash<QString, QString> lines{{u"0_len"_s, kLengths}, {u"1_len"_s, kLengths}};
    EXPECT_EQ(parseOldTasks(1, lines).size(), 1U);
    EXPECT_EQ(parseOldTasks(0, lines).size(), 0U);
    EXPECT_EQ(parseOldTasks(-1, lines).size(), 0U);
}

TEST(OldTasks, takeNoLongerForAnAbsurdCount)
{
    EXPECT_EQ(parseOldTasks(INT32_MAX, {{u"2000000000_len"_s, kLengths}}).size(), 1U);
}

TEST(OldTasks, areNumberedWithoutLeadingZerosOrSigns)
{
    const QHash<QString, QString> lines{{u"01_len"_s, kLengths}, {u"+1_len"_s, kLengths},
                                        {u"-1_len"_s, kLengths}, {u" 1_len"_s, kLengths},
                                        {u"_len"_s, kLengths},   {u"99999999999_len"_s, kLengths}};
    EXPECT_TRUE(parseOldTasks(INT32_MAX, lines).empty());
}

TEST(OldTasks, survivePiecesAndFlippedCharacters)
{
    for (qsizetype end = 0; end <= kLengths.size(); ++end) {
        static_cast<void>(parseOldTask(QStringView(kLengths).first(end), kTexts));
    }
    for (qsizetype end = 0; end <= kTexts.size(); ++end) {
        EXPECT_TRUE(parseOldTask(kLengths, QStringView(kTexts).first(end)));
    }
    QRandomGenerator random(20240501);
    for (int round = 0; round < 2000; ++round) {
        QString lengths = kLengths;
        lengths[random.bounded(lengths.size())] = QChar(random.bounded(0x10000));
        const std::optional<TaskInfo> task = parseOldTask(lengths, kTexts);
        EXPECT_LE(task.value_or(TaskInfo()).strOriURL.size(), kTexts.size());
    }
}

} // namespace tollivar::test
