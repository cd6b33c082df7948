#include "platform/browser_engine.h"
#include "platform/find_program.h"
#include "tests/support/processes.h"
#include "tests/support/sandbox.h"

#include <QFile>

#include <sys/stat.h>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::platform::browserMajorVersion;
using tollivar::platform::browserPlaces;
using tollivar::platform::BrowserUse;
using tollivar::platform::findBrowser;
using tollivar::platform::findProgram;
using tollivar::platform::kUnknownBrowserVersion;
using tollivar::test::misbehavingChild;
using tollivar::test::openDescriptors;
using tollivar::test::Sandbox;

constexpr auto kLong = 60s;

class BrowserEngine : public testing::Test {
protected:
    ~BrowserEngine() override { qunsetenv("TOLLIVAR_BROWSER"); }

    QString browser(const QByteArray &script) const
    {
        const QString path = m_sandbox.write(u"browser"_s, "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(chmod(QFile::encodeName(path).constData(), 0700), 0);
        return path;
    }
    /// A browser that misbehaves.
    QString browserThat(const QString &misbehaves) const
    {
        return browser("exec " + misbehavingChild({misbehaves}).toUtf8());
    }

    Sandbox m_sandbox;
};

TEST_F(BrowserEngine, isTheOneThatTheOperatorNames)
{
    const QString chosen = browser("");
    qputenv("TOLLIVAR_BROWSER", QFile::encodeName(chosen));
    EXPECT_EQ(findBrowser(), chosen);
}

TEST_F(BrowserEngine, isNoOtherThanTheOneThatTheOperatorNames)
{
    for (const QByteArray &name : {QByteArray("/no/such/browser"), QByteArray("/tmp")}) {
        qputenv("TOLLIVAR_BROWSER", name);
        EXPECT_EQ(findBrowser(), std::nullopt);
    }
}

TEST_F(BrowserEngine, isElseTheFirstThatIsInstalled)
{
    std::optional<QString> first;
    for (const QString &place : browserPlaces()) {
        first = first ? first : findProgram(place);
    }
    EXPECT_EQ(findBrowser(), first);
    qputenv("TOLLIVAR_BROWSER", "");
    EXPECT_EQ(findBrowser(), first);
}

TEST_F(BrowserEngine, forAWindowIsNoneThatCannotShowOne)
{
    const QStringList places = browserPlaces(BrowserUse::WithWindow);
    EXPECT_FALSE(places.isEmpty());
    EXPECT_TRUE(places.filter(QStringLiteral("headless")).isEmpty());
}

TEST_F(BrowserEngine, tellsItsMajorVersion)
{
    EXPECT_EQ(browserMajorVersion(browser("[ \"$*\" = --version ] && echo Chromium 156.0.8078.79"),
                                  kLong),
              156);
}

TEST_F(BrowserEngine, tellsItsMajorVersionAmongComplaints)
{
    EXPECT_EQ(
        browserMajorVersion(browser("echo 'cannot open display 12' >&2; echo 'X 99.1'"), kLong),
        99);
}

TEST_F(BrowserEngine, ofTheMachineTellsItsMajorVersion)
{
    const auto installed = findBrowser();
    if (!installed) {
        GTEST_SKIP() << "no browser is installed";
    }
    EXPECT_GT(browserMajorVersion(*installed, kLong), 100);
}

TEST_F(BrowserEngine, hasNoVersionWhenItCannotBeRunOrSaysNone)
{
    EXPECT_EQ(browserMajorVersion(QString(), kLong), kUnknownBrowserVersion);
    EXPECT_EQ(browserMajorVersion(u"/no/such/browser"_s, kLong), kUnknownBrowserVersion);
    EXPECT_EQ(browserMajorVersion(m_sandbox.path(), kLong), kUnknownBrowserVersion);
    for (const QString &misbehaves : {u"silent"_s, u"crash"_s, u"both"_s}) {
        EXPECT_EQ(browserMajorVersion(browserThat(misbehaves), kLong), kUnknownBrowserVersion);
    }
}

TEST_F(BrowserEngine, isEndedWhenItDoesNotAnswerInTime)
{
    const qsizetype before = openDescriptors();
    EXPECT_EQ(browserMajorVersion(browserThat(u"deaf"_s), 50ms), kUnknownBrowserVersion);
    EXPECT_EQ(browserMajorVersion(browserThat(u"chatter"_s), 50ms), kUnknownBrowserVersion);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(BrowserEngine, isEndedWhenItSaysTooMuch)
{
    EXPECT_EQ(browserMajorVersion(browserThat(u"endless"_s), kLong), kUnknownBrowserVersion);
}

TEST_F(BrowserEngine, canBeAskedByAnyThread)
{
    const QString chosen = browser("echo Chromium 7.0");
    int version = 0;
    std::thread([&] { version = browserMajorVersion(chosen, kLong); }).join();
    EXPECT_EQ(version, 7);
}

} // namespace
