#include "app/data_directory.h"
#include "settings/settings_store.h"
#include "tests/support/desktop_session.h"
#include "tests/support/http_site.h"
#include "tests/support/notification_service.h"
#include "tests/support/program_run.h"
#include "tests/support/sound_device.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;
using Answer = test::NotificationService::Answer;

const QString kPopup = u"^Download completed$"_s;

/// The built program on a desktop whose notices can be switched off.
class ProgramInQuietTime : public ::testing::Test {
protected:
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(u"data"_s)));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox.file(u"state"_s)));
        const auto paths = setUpData();
        ASSERT_TRUE(paths);
        settings::SettingsStore settings(paths->settings);
        settings.setFlag(settings::keys::kNoRemindFlashVersion, true);
        settings.setNumber(settings::keys::kCheckUpdate, 3);
        start();
    }
    void TearDown() override
    {
        m_program->signal(SIGTERM);
        EXPECT_EQ(m_program->finish(), 0);
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_STATE_HOME");
    }

    void start()
    {
        m_program = std::make_unique<ProgramRun>(m_sandbox, u"Tollivar"_s, QStringList{});
        static_cast<void>(m_desktop.waitForWindow(u"^Tollivar$"_s));
    }
    /// Hands a finished download to the running program, and waits until that has asked the desktop.
    void download(const QByteArray &path)
    {
        const int before = m_service.questions();
        m_site.on(path, test::answer("12345"));
        ProgramRun terminal(m_sandbox, u"tollivar-cli"_s,
                            {u"download"_s, u"--mode"_s, u"direct"_s, u"--folder"_s, u"out"_s,
                             m_site.address(path)});
        EXPECT_EQ(terminal.finish(), 0);
        test::waitUntil("the question", [&] { return m_service.questions() > before; });
    }

    test::Sandbox m_sandbox;
    test::SoundDevice m_device;
    test::SessionBus m_bus;
    test::NotificationService m_service{m_bus};
    test::DesktopSession m_desktop{m_sandbox};
    test::HttpSite m_site;
    std::unique_ptr<ProgramRun> m_program;
};

TEST_F(ProgramInQuietTime, aFinishedDownloadIsNeitherSeenNorHeardUntilNoticesAreWelcomeAgain)
{
    m_service.answer(Answer::Yes);
    download("/first.mp4");
    download("/second.mp4");
    // By the second question the first answer has done what it does.
    EXPECT_EQ(m_device.heard(), QByteArray());
    m_service.answer(Answer::No);
    download("/third.mp4");
    static_cast<void>(m_desktop.waitForWindow(kPopup));
    test::waitUntil("the sound", [this] { return !m_device.heard().isEmpty(); });
    // Had one before come up, it would still stand below this one.
    const QByteArray popups = m_desktop.ask({u"search"_s, u"--onlyvisible"_s, u"--name"_s, kPopup});
    EXPECT_EQ(popups.count('\n') + 1, 1) << popups.constData();
}

TEST_F(ProgramInQuietTime, aSoundDeviceThatHangsHoldsNoPopupBack)
{
    m_device.hang();
    // Found by the program that is started anew.
    m_program->signal(SIGTERM);
    EXPECT_EQ(m_program->finish(), 0);
    start();
    download("/first.mp4");
    static_cast<void>(m_desktop.waitForWindow(kPopup));
    download("/second.mp4");
}

TEST_F(ProgramInQuietTime, aDesktopThatHangsHoldsNoPopupBack)
{
    m_service.answer(Answer::Silence);
    download("/first.mp4");
    static_cast<void>(m_desktop.waitForWindow(kPopup));
}

} // namespace
} // namespace tollivar::app
