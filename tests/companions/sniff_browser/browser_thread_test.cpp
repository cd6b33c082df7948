#include "companions/sniff_browser/browser_thread.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::sniff {
namespace {

using namespace Qt::StringLiterals;

/// What is started here is no browser: it only takes its time.
class BrowserThreadTest : public ::testing::Test {
protected:
    BrowserThreadTest() : m_oldPath(qgetenv("PATH"))
    {
        // Where the guardian lies.
        qputenv("PATH", QByteArray(TOLLIVAR_PROGRAM_DIRECTORY) + ':' + m_oldPath);
        qputenv("TMPDIR", QFile::encodeName(m_sandbox.path()));
    }
    ~BrowserThreadTest() override
    {
        qputenv("PATH", m_oldPath);
        qunsetenv("TMPDIR");
        qunsetenv("TOLLIVAR_BROWSER");
    }

    void useSilentBrowser()
    {
        const QString path =
            m_sandbox.write(u"browser"_s, "#!/bin/sh\necho > \"$0.runs\"\nexec sleep 600\n");
        ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
        qputenv("TOLLIVAR_BROWSER", QFile::encodeName(path));
    }
    bool runs() const { return QFile::exists(m_sandbox.file(u"browser.runs"_s)); }
    QStringList profiles() const
    {
        return QDir(m_sandbox.path()).entryList({u"tollivar-capture-*"_s}, QDir::Dirs);
    }

    test::Sandbox m_sandbox;
    QByteArray m_oldPath;
};

TEST_F(BrowserThreadTest, oneThatIsMadeToEndTellsOnlyThatItIsGoneAndLeavesNoProfile)
{
    useSilentBrowser();
    BrowserThread browser{QString()};
    QSignalSpy ended(&browser, &BrowserThread::browserEnded);
    QSignalSpy gone(&browser, &BrowserThread::gone);
    test::waitUntil("the browser", [this] { return runs(); });
    EXPECT_EQ(profiles().size(), 1);
    browser.end();
    test::waitUntil("its end", [&gone] { return !gone.isEmpty(); });
    EXPECT_EQ(profiles(), QStringList());
    EXPECT_TRUE(ended.isEmpty());
}

TEST_F(BrowserThreadTest, oneThatWasNeverThereIsGoneAsOftenAsItIsAsked)
{
    qputenv("TOLLIVAR_BROWSER", "/nowhere");
    BrowserThread browser{QString()};
    QSignalSpy missing(&browser, &BrowserThread::browserMissing);
    QSignalSpy gone(&browser, &BrowserThread::gone);
    test::waitUntil("its end", [&gone] { return !gone.isEmpty(); });
    EXPECT_EQ(missing.size(), 1);
    browser.end();
    EXPECT_EQ(gone.size(), 1);
    test::waitUntil("its end again", [&gone] { return gone.size() == 2; });
}

} // namespace
} // namespace tollivar::sniff
