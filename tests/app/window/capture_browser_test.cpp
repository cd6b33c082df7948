#include "app/window/capture_browser.h"
#include "tests/support/no_threads.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using platform::AutoResetEvent;
using Told = std::function<void(const QString &record)>;

constexpr auto kLong = 60s;

TEST(CaptureBrowser, tellsWhatIsChosenAndItsEndInTheirOrder)
{
    QStringList told;
    CaptureBrowser browser([](AutoResetEvent &, const Told &onRecord) {
        onRecord(u"one"_s);
        onRecord(u"two"_s);
    });
    QObject::connect(&browser, &CaptureBrowser::captured, &browser,
                     [&told](const QString &record) { told.append(record); });
    QObject::connect(&browser, &CaptureBrowser::ended, &browser,
                     [&told] { told.append(u"end"_s); });
    test::waitUntil("the end", [&told] { return told.contains(u"end"_s); });
    EXPECT_EQ(told, (QStringList{u"one"_s, u"two"_s, u"end"_s}));
}

TEST(CaptureBrowser, isStoppedWhenItsOwnerHasDoneWithIt)
{
    const auto wasStopped = std::make_shared<std::atomic<bool>>(false);
    // So long that only the end of the thread ends the wait.
    auto browser = std::make_unique<CaptureBrowser>(
        [wasStopped](AutoResetEvent &stop, const Told &) { *wasStopped = stop.wait(kLong); },
        std::chrono::hours(1));
    browser.reset();
    EXPECT_TRUE(*wasStopped);
}

TEST(CaptureBrowser, isLetGoWhenItDoesNotEnd)
{
    const auto hang = std::make_shared<AutoResetEvent>();
    const auto ended = std::make_shared<AutoResetEvent>();
    auto browser = std::make_unique<CaptureBrowser>(
        [hang, ended](AutoResetEvent &stop, const Told &onRecord) {
            EXPECT_TRUE(hang->wait(kLong));
            // Everything it may use is still there.
            EXPECT_TRUE(stop.isSet());
            onRecord(u"too late"_s);
            ended->set();
        },
        0ms);
    browser.reset();
    hang->set();
    EXPECT_TRUE(ended->wait(kLong));
}

TEST(CaptureBrowser, hasEndedWhereNoThreadIsLeft)
{
    std::unique_ptr<CaptureBrowser> browser;
    {
        const test::NoThreads none;
        browser = std::make_unique<CaptureBrowser>(
            [](AutoResetEvent &, const Told &) { ADD_FAILURE() << "nothing can run"; });
    }
    bool hasEnded = false;
    QObject::connect(browser.get(), &CaptureBrowser::ended, browser.get(),
                     [&hasEnded] { hasEnded = true; });
    test::waitUntil("the end", [&hasEnded] { return hasEnded; });
}

} // namespace
} // namespace tollivar::app
