#include "fetch/capture_stream.h"
#include "fetch/parser_answer.h"
#include "platform/command_line_text.h"
#include "tests/support/sandbox.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace tollivar::fetch {
namespace {

using namespace Qt::StringLiterals;
using platform::AutoResetEvent;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The stream of a script that plays the capture browser.
class CaptureStream : public ::testing::Test {
protected:
    std::vector<QString> addressesOf(const QByteArray &script)
    {
        followCaptureBrowser(command(script), m_stop, [this](const QString &record) {
            for (const AnswerRecord &each : readAnswer(record)) {
                m_addresses.push_back(each.address);
            }
        });
        return m_addresses;
    }

    QString command(const QByteArray &script) const
    {
        return platform::joinCommandLine({u"/bin/sh"_s, m_sandbox.write(u"browser.sh"_s, script)});
    }

    test::Sandbox m_sandbox;
    AutoResetEvent m_stop;
    std::vector<QString> m_addresses;
};

TEST_F(CaptureStream, handsEachRecordOnOnceAlsoWhenSeveralComeTogether)
{
    EXPECT_THAT(addressesOf("printf 'URL = http://s/1\\r\\n\\r\\nURL = http://s/2\\r\\n\\r\\n'\n"),
                ElementsAre(u"http://s/1"_s, u"http://s/2"_s));
}

TEST_F(CaptureStream, joinsARecordThatComesInPieces)
{
    EXPECT_THAT(addressesOf("printf 'URL = http://s/1\\r\\n\\r\\n' | dd bs=1 2>/dev/null\n"),
                ElementsAre(u"http://s/1"_s));
}

TEST_F(CaptureStream, aRecordThatNoEmptyLineEndsIsLost)
{
    EXPECT_THAT(addressesOf("printf 'URL = http://s/1\\r\\n'\n"), IsEmpty());
}

TEST_F(CaptureStream, whatNeverEndsIsDropped)
{
    const auto addresses = addressesOf("head -c 3000000 /dev/zero | tr '\\0' x\n"
                                       "printf '\\r\\n\\r\\nURL = http://s/1\\r\\n\\r\\n'\n");
    ASSERT_FALSE(addresses.empty());
    EXPECT_EQ(addresses.back(), u"http://s/1"_s);
}

TEST_F(CaptureStream, endsWithABrowserThatCannotBeStarted)
{
    followCaptureBrowser(u"/nowhere/SniffBrowser"_s, m_stop,
                         [](const QString & /*record*/) { FAIL() << "nobody wrote a record"; });
}

TEST_F(CaptureStream, aStopEndsTheBrowserAtOnce)
{
    const QString mark = m_sandbox.file(u"started"_s);
    const QByteArray script = ": > " + mark.toUtf8() + "; exec sleep 600\n";
    auto running = std::async(std::launch::async, [&] { return addressesOf(script); });
    while (!QFile::exists(mark) &&
           running.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
    }
    const auto begin = std::chrono::steady_clock::now();
    m_stop.set();
    EXPECT_THAT(running.get(), IsEmpty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(CaptureStream, aStopEndsABrowserThatWritesWithoutAPause)
{
    std::promise<void> wrote;
    auto running = std::async(std::launch::async, [&] {
        bool isFirst = true;
        followCaptureBrowser(command("while :; do printf 'URL = http://s/1\\r\\n\\r\\n'; done\n"),
                             m_stop, [&](const QString & /*record*/) {
                                 if (std::exchange(isFirst, false)) {
                                     wrote.set_value();
                                 }
                             });
    });
    wrote.get_future().wait();
    m_stop.set();
    EXPECT_EQ(running.wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

TEST(CaptureStreamCommand, namesTheModeByTheEnginesAge)
{
    EXPECT_EQ(captureBrowserCommandLine(-1), u".\\SniffBrowser.exe -parsemode PARSE_MODE_IE7"_s);
    EXPECT_EQ(captureBrowserCommandLine(6), u".\\SniffBrowser.exe -parsemode PARSE_MODE_IE6"_s);
    EXPECT_EQ(captureBrowserCommandLine(7), u".\\SniffBrowser.exe -parsemode PARSE_MODE_IE7"_s);
}

} // namespace
} // namespace tollivar::fetch
