#include "app/cli/progress_line.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

constexpr std::uint32_t kMegabyte = 1024 * 1024;

tasks::TaskInfo clip(std::uint32_t size)
{
    tasks::TaskInfo task;
    task.strOutputName = QStringLiteral("Clip");
    task.strFileType = QStringLiteral(".mp4");
    task.dwSize = size;
    return task;
}

TEST(ProgressLine, showsPercentSizesSpeedAndTimeLeft)
{
    const tasks::TaskProgress progress{.percentHundredths = 5000,
                                       .bytesPerSecond = 512 * 1024,
                                       .secondsLeft = 3661,
                                       .bytesDownloaded = 2 * kMegabyte};

    EXPECT_EQ(
        progressLine(QStringLiteral("Downloading - 50.00%"), clip(4 * kMegabyte), progress, 100),
        QStringLiteral("Downloading - 50.00%  2.00/4.00 MB  512.00 KB/s  1:01:01 left  "
                       "Clip.mp4"));
}

TEST(ProgressLine, leavesOutWhatIsNotKnown)
{
    EXPECT_EQ(progressLine(QStringLiteral("Parsing URL..."), clip(tasks::kUnknownSize), {}, 80),
              QStringLiteral("Parsing URL...  Clip.mp4"));
    EXPECT_EQ(progressLine(QStringLiteral("Downloading - 1.00MB"), clip(tasks::kUnknownSize),
                           {.bytesDownloaded = kMegabyte}, 80),
              QStringLiteral("Downloading - 1.00MB  1.00 MB  Clip.mp4"));
}

TEST(ProgressLine, aNarrowTerminalCutsTheNameNotTheFigures)
{
    EXPECT_EQ(progressLine(QStringLiteral("Parsing URL..."), clip(tasks::kUnknownSize), {}, 20),
              QStringLiteral("Parsing URL...  Cl…"));
    EXPECT_EQ(progressLine(QStringLiteral("Parsing URL..."), clip(tasks::kUnknownSize), {}, 5),
              QStringLiteral("Parsing URL..."));
}

} // namespace
} // namespace tollivar::app
