#include "app/manager_options.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::app {

class ManagerOptions : public ::testing::Test {
protected:
    test::Sandbox m_sandbox;
    settings::SettingsStore m_settings{m_sandbox.file(QStringLiteral("settings.ini"))};
};

TEST_F(ManagerOptions, areWhatTheSettingsSay)
{
    m_settings.setNumber(settings::keys::kMaxSimDownloads, 12);
    m_settings.setNumber(settings::keys::kMaxRetry, 7);
    m_settings.setFlag(settings::keys::kAutoParseOriginalUrl, false);
    const auto options = managerOptions(m_settings);
    EXPECT_EQ(options.maximumDownloads, 12);
    EXPECT_EQ(options.retry.maximumRetries, 7);
    EXPECT_FALSE(options.retry.switchesMode);
}

TEST_F(ManagerOptions, withoutSettingsRunFiveTasksAndRetryOnce)
{
    const auto options = managerOptions(m_settings);
    EXPECT_EQ(options.maximumDownloads, 5);
    EXPECT_EQ(options.retry.maximumRetries, 1);
    EXPECT_TRUE(options.retry.switchesMode);
}

TEST_F(ManagerOptions, letOneTaskRunWhateverTheNumberIs)
{
    for (const QString &number : {QStringLiteral("0"), QStringLiteral("-3"), QStringLiteral("abc"),
                                  QStringLiteral("-99999999999")}) {
        m_settings.setText(settings::keys::kMaxSimDownloads, number);
        EXPECT_EQ(managerOptions(m_settings).maximumDownloads, 1) << number.toStdString();
        EXPECT_EQ(m_settings.text(settings::keys::kMaxSimDownloads), number);
    }
}

} // namespace tollivar::app
