#include "tasks/api/download_mode.h"
#include "tasks/api/task_info.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::DownloadMode;
using tasks::packDownloadMode;
using tasks::TaskInfo;
using tasks::unpackDownloadMode;

TEST(DownloadModePacking, splitsTwentySixIntoMethodSixAndQualityTwo)
{
    EXPECT_EQ(unpackDownloadMode(26), (DownloadMode{.low = 6, .high = 2}));
}

TEST(DownloadModePacking, givesEveryStoredValueBack)
{
    for (std::int32_t stored = -200; stored <= 200; ++stored) {
        EXPECT_EQ(packDownloadMode(unpackDownloadMode(stored)), stored);
    }
}

TEST(DownloadModePacking, givesTheLimitsOfTheStoredNumberBack)
{
    for (const std::int32_t stored : {INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(packDownloadMode(unpackDownloadMode(stored)), stored);
    }
}

TEST(TaskInfoDefaults, sizeIsUnknownTypeIsFlashVideoNamingFollowsTheTitle)
{
    const TaskInfo task;
    EXPECT_EQ(task.dwSize, 0xFFFFFFFFU);
    EXPECT_EQ(task.strFileType, u".flv"_s);
    EXPECT_EQ(task.bAutoRename, 1);
    EXPECT_EQ(task.nProtocol, 1);
    EXPECT_EQ(task.dwDownloadSize, 0U);
    EXPECT_EQ(task.bFileCreated, 0);
    EXPECT_EQ(task.nModeLow, 0);
    EXPECT_EQ(task.nModeHigh, 0);
    EXPECT_EQ(task.nCompletedStatus, 0);
    EXPECT_EQ(task.m_ConvOpts, tasks::ConversionOptions());
    EXPECT_EQ(task.m_ConvOpts.m_nTotalSeconds, 0);
}

TEST(TaskInfoCopy, takesTheSecondsThatAreNotStoredAlong)
{
    TaskInfo task;
    task.m_ConvOpts.m_nTotalSeconds = 20;
    task.m_ConvOpts.m_nStartSeconds = 5;
    task.m_ConvOpts.m_nLengthSeconds = 10;
    const TaskInfo copied(task);
    TaskInfo assigned;
    assigned = task;
    EXPECT_EQ(copied, task);
    EXPECT_EQ(assigned, task);
    EXPECT_EQ(assigned.m_ConvOpts.m_nLengthSeconds, 10);
}

TEST(TaskInfoPath, joinsWithNothingInBetween)
{
    TaskInfo task;
    task.strOutputFolder = u"/videos"_s;
    task.strOutputName = u"clip"_s;
    EXPECT_EQ(task.outputPath(), u"/videosclip.flv"_s);
}

} // namespace tollivar::test
