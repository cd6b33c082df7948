#include "tasks/task_columns.h"

#include <gtest/gtest.h>

#include <set>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::columnName;
using tasks::columnText;
using tasks::kTaskColumns;
using tasks::NumberColumn;
using tasks::setColumnText;
using tasks::TaskColumn;
using tasks::TaskInfo;
using tasks::TextColumn;

const TaskColumn &columnNamed(QStringView name)
{
    return *std::find_if(kTaskColumns.begin(), kTaskColumns.end(),
                         [name](const TaskColumn &column) { return column.name == name; });
}

std::uint32_t sizeFrom(const QString &stored)
{
    TaskInfo task;
    setColumnText(task, columnNamed(u"dwSize"), stored);
    return task.dwSize;
}

TEST(TaskColumns, holdOneFieldEach)
{
    // Each column's own text comes back after all others were set: no two share a field.
    TaskInfo task;
    int number = 100;
    for (const TaskColumn &column : kTaskColumns) {
        setColumnText(task, column, QString::number(number++));
    }
    number = 100;
    for (const TaskColumn &column : kTaskColumns) {
        EXPECT_EQ(columnText(task, column), QString::number(number++))
            << qPrintable(column.name.toString());
    }
}

TEST(TaskColumns, areNamedApart)
{
    std::set<QString> names;
    for (const TaskColumn &column : kTaskColumns) {
        names.insert(column.name.toString());
    }
    EXPECT_EQ(names.size(), 33U);
}

TEST(TaskColumns, dropThePrefixOfTheAudioBitRateAlone)
{
    TaskInfo task;
    task.m_ConvOpts.m_csAudioBitRateOpts = u"128"_s;
    EXPECT_EQ(columnText(task, columnNamed(u"csAudioBitRateOpts")), u"128"_s);
}

TEST(TaskColumns, haveFixedCodes)
{
    EXPECT_EQ(columnName(static_cast<TextColumn>(0)), u"strDownloadUrl");
    EXPECT_EQ(columnName(static_cast<TextColumn>(3)), u"strFileType");
    EXPECT_EQ(columnName(static_cast<TextColumn>(4)), u"strCookies");
    EXPECT_EQ(columnName(static_cast<TextColumn>(5)), u"strAgent");
    EXPECT_EQ(columnName(static_cast<TextColumn>(6)), u"strReferer");
    EXPECT_EQ(columnName(static_cast<TextColumn>(7)), u"strOutputName");
    EXPECT_EQ(columnName(static_cast<NumberColumn>(1)), u"dwSize");
    EXPECT_EQ(columnName(static_cast<NumberColumn>(2)), u"dwDownloadSize");
    EXPECT_EQ(columnName(static_cast<NumberColumn>(8)), u"bFileCreated");
    EXPECT_EQ(columnName(static_cast<NumberColumn>(9)), u"nDownloadMode");
    EXPECT_EQ(columnName(static_cast<NumberColumn>(10)), u"nCompletedStatus");
}

TEST(TaskColumns, haveNoNameForOtherCodes)
{
    for (const int code : {-1, 1, 2, 8, 9, 10, 11}) {
        EXPECT_TRUE(columnName(static_cast<TextColumn>(code)).isEmpty()) << code;
    }
    for (const int code : {-1, 0, 3, 4, 5, 6, 7, 11}) {
        EXPECT_TRUE(columnName(static_cast<NumberColumn>(code)).isEmpty()) << code;
    }
}

TEST(StoredSize, isUnderstoodInItsSignedAndItsUnsignedForm)
{
    EXPECT_EQ(sizeFrom(u"-1"_s), 0xFFFFFFFFU);
    EXPECT_EQ(sizeFrom(u"4294967295"_s), 0xFFFFFFFFU);
    EXPECT_EQ(sizeFrom(u"-2147483648"_s), 0x80000000U);
    EXPECT_EQ(sizeFrom(u"2147483648"_s), 0x80000000U);
    EXPECT_EQ(sizeFrom(u"2147483647"_s), 0x7FFFFFFFU);
    EXPECT_EQ(sizeFrom(u"0"_s), 0U);
}

TEST(StoredSize, takesTheLeadingDigitsOfAnyText)
{
    EXPECT_EQ(sizeFrom(u""_s), 0U);
    EXPECT_EQ(sizeFrom(u"abc"_s), 0U);
    EXPECT_EQ(sizeFrom(u"-"_s), 0U);
    EXPECT_EQ(sizeFrom(u"+"_s), 0U);
    EXPECT_EQ(sizeFrom(u"--5"_s), 0U);
    EXPECT_EQ(sizeFrom(u" \t12 monkeys"_s), 12U);
    EXPECT_EQ(sizeFrom(u"+7"_s), 7U);
    EXPECT_EQ(sizeFrom(u"1.5e9"_s), 1U);
    EXPECT_EQ(sizeFrom(u"0x10"_s), 0U);
    EXPECT_EQ(sizeFrom(u"٣"_s), 0U);
}

TEST(StoredSize, saturatesOutsideThirtyTwoBits)
{
    EXPECT_EQ(sizeFrom(u"4294967296"_s), 0xFFFFFFFFU);
    EXPECT_EQ(sizeFrom(QString(5000, u'9')), 0xFFFFFFFFU);
    EXPECT_EQ(sizeFrom(u'-' + QString(5000, u'9')), 0x80000000U);
}

TEST(StoredNumber, saturatesOutsideThirtyTwoBits)
{
    TaskInfo task;
    setColumnText(task, columnNamed(u"nProtocol"), u"99999999999999999999"_s);
    EXPECT_EQ(task.nProtocol, INT32_MAX);
    setColumnText(task, columnNamed(u"nProtocol"), u"-99999999999999999999"_s);
    EXPECT_EQ(task.nProtocol, INT32_MIN);
}

} // namespace tollivar::test
