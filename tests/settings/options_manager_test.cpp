#include "settings/general_options.h"
#include "settings/options_manager.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::settings {
namespace {

class OptionsManager : public ::testing::Test {
protected:
    CGeneralOptions &general() { return dynamic_cast<CGeneralOptions &>(*m_manager.Get(0)); }

    test::Sandbox m_sandbox;
    SettingsStore m_store{m_sandbox.file(QStringLiteral("settings.ini"))};
    COptionsManager m_manager{m_store};
};

TEST_F(OptionsManager, loadingMakesTheGeneralGroup)
{
    EXPECT_EQ(m_manager.Get(0), nullptr);
    m_manager.LoadAll();
    EXPECT_EQ(general().m_nMaxRetry, 1);
    EXPECT_EQ(m_manager.Get(1), nullptr);
}

TEST_F(OptionsManager, theGeneralOptionsAreThoseOfTheGroup)
{
    m_manager.LoadAll();
    general().m_nMaxSimDownloads = 7;
    EXPECT_EQ(m_manager.general().m_nMaxSimDownloads, 7);
}

TEST_F(OptionsManager, beforeAnythingIsLoadedTheGeneralOptionsAreTheInitialOnes)
{
    EXPECT_EQ(m_manager.general().m_nMaxRetry, CGeneralOptions(m_store).m_nMaxRetry);
}

TEST_F(OptionsManager, aCopyOfTheGeneralOptionsIsItsOwn)
{
    m_manager.LoadAll();
    CGeneralOptions copy = m_manager.general();
    copy.m_nMaxRetry = 6;
    EXPECT_EQ(m_manager.general().m_nMaxRetry, 1);
}

TEST_F(OptionsManager, aGroupThatIsLentIsStoredAsAClone)
{
    CGeneralOptions options(m_store);
    options.m_nMaxRetry = 5;
    m_manager.Set(0, options);
    options.m_nMaxRetry = 6;

    EXPECT_EQ(general().m_nMaxRetry, 5);
}

TEST_F(OptionsManager, aGroupThatIsHandedOverIsStoredItself)
{
    auto options = std::make_unique<CGeneralOptions>(m_store);
    const COptionsEx *const address = options.get();
    m_manager.Set(0, std::move(options));

    EXPECT_EQ(m_manager.Get(0), address);
}

TEST_F(OptionsManager, aKnownGroupTakesTheValuesOver)
{
    m_manager.LoadAll();
    const COptionsEx *const known = m_manager.Get(0);
    auto edited = std::make_unique<CGeneralOptions>(m_store);
    edited->m_nMaxRetry = 7;
    m_manager.Set(0, std::move(edited));

    EXPECT_EQ(m_manager.Get(0), known);
    EXPECT_EQ(general().m_nMaxRetry, 7);
}

TEST_F(OptionsManager, handingOverNothingChangesNothing)
{
    m_manager.Set(0, nullptr);
    EXPECT_EQ(m_manager.Get(0), nullptr);
}

TEST_F(OptionsManager, savingWritesEveryGroup)
{
    m_manager.LoadAll();
    general().m_nMaxSimDownloads = 9;
    m_manager.SaveAll();
    EXPECT_EQ(m_store.number(keys::kMaxSimDownloads), 9);
}

TEST_F(OptionsManager, clearingForgetsThem)
{
    m_manager.LoadAll();
    m_manager.Clear();
    EXPECT_EQ(m_manager.Get(0), nullptr);
}

} // namespace
} // namespace tollivar::settings
