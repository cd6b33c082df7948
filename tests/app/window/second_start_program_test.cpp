#include "tests/app/window/program_on_desktop.h"
#include "tests/support/raw_server.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

/// A start of the program while it runs, with the screen watched.
class SecondStartOnDesktop : public ProgramOnDesktop {
protected:
    QStringList storedAddresses() const
    {
        test::ProgramRun list(m_sandbox, u"tollivar-cli"_s, {u"list"_s, u"--json"_s});
        list.finish();
        QStringList addresses;
        for (const QJsonValue &task : QJsonDocument::fromJson(list.output()).array()) {
            addresses.append(task[u"strOriURL"].toString());
        }
        return addresses;
    }

    // Never answers, so that no end of the task brings anything onto the screen.
    test::RawServer m_silent{[](const auto &peer) { peer.stall(); }};
};

TEST_F(SecondStartOnDesktop, givesItsAddressToTheFirstAndShowsNoWindowOfItsOwn)
{
    waitUntilActive(start());
    static_cast<void>(m_desktop.waitForWindow(kDropZone));
    m_desktop.watchScreen();
    const QString address = u"http://127.0.0.1:%1/page"_s.arg(m_silent.port());
    startAgain({u"-url"_s, address});
    test::waitUntil("the task", [&] { return storedAddresses() == QStringList{address}; });
    EXPECT_EQ(m_desktop.windowsShown(), 0);
    // What comes up is seen.
    static_cast<void>(m_desktop.startOther());
    EXPECT_GT(m_desktop.windowsShown(), 0);
    end();
}

TEST_F(SecondStartOnDesktop, givesItsAddressAlsoToAHiddenFirstAndLeavesItHidden)
{
    m_desktop.startTray();
    const QString window = start();
    waitUntilActive(window);
    m_desktop.close(window);
    waitUntilGone(kMainWindow);
    m_desktop.watchScreen();
    const QString address = u"http://127.0.0.1:%1/page"_s.arg(m_silent.port());
    startAgain({u"-url"_s, address});
    test::waitUntil("the task", [&] { return storedAddresses() == QStringList{address}; });
    EXPECT_FALSE(isShown(kMainWindow));
    end();
}

} // namespace
} // namespace tollivar::app
