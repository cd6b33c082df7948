#include "tests/support/wait_until.h"
#include "ui/tray/tray_wait.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::ui {
namespace {

using namespace std::chrono_literals;

TEST(TrayWait, looksUntilATrayIsThereAndThenNoMore)
{
    int looks = 0;
    TrayWait wait([&looks] { return ++looks == 3; }, 60s);
    const QSignalSpy givenUp(&wait, &TrayWait::givenUp);
    test::waitUntil("the third look", [&] { return looks == 3; });
    // Another wait, as impatient as can be, outlives several looks of this one.
    TrayWait other([] { return false; }, 600ms);
    const QSignalSpy otherGaveUp(&other, &TrayWait::givenUp);
    test::waitUntil("the other to give up", [&] { return otherGaveUp.count() == 1; });
    EXPECT_EQ(looks, 3);
    EXPECT_EQ(givenUp.count(), 0);
}

TEST(TrayWait, givesUpOnceWhenNoneComes)
{
    TrayWait wait([] { return false; }, 1ms);
    const QSignalSpy givenUp(&wait, &TrayWait::givenUp);
    test::waitUntil("it to give up", [&] { return givenUp.count() > 0; });
    EXPECT_EQ(givenUp.count(), 1);
}

TEST(TrayWait, neverGivesUpATrayThatIsThereAtOnce)
{
    int looks = 0;
    TrayWait wait(
        [&looks] {
            ++looks;
            return true;
        },
        1ms);
    const QSignalSpy givenUp(&wait, &TrayWait::givenUp);
    TrayWait other([] { return false; }, 50ms);
    const QSignalSpy otherGaveUp(&other, &TrayWait::givenUp);
    test::waitUntil("the other to give up", [&] { return otherGaveUp.count() == 1; });
    EXPECT_EQ(givenUp.count(), 0);
    EXPECT_EQ(looks, 1);
}

} // namespace
} // namespace tollivar::ui
