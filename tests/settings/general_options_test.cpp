#include "settings/general_options.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::settings {
namespace {

class OtherOptions final : public COptionsEx {
public:
    void CopyFrom(const COptionsEx & /*other*/) override {}
    std::unique_ptr<COptionsEx> Clone() const override { return std::make_unique<OtherOptions>(); }
};

class GeneralOptions : public ::testing::Test {
protected:
    test::Sandbox m_sandbox;
    SettingsStore m_store{m_sandbox.file(QStringLiteral("settings.ini"))};
};

TEST_F(GeneralOptions, aGroupThatWasNeverLoadedRetriesThreeTimes)
{
    const CGeneralOptions options(m_store);
    EXPECT_EQ(options.m_nMaxRetry, 3);
    EXPECT_TRUE(options.m_bMinimizeDragTask);
    EXPECT_EQ(options.m_nMaxSimDownloads, 5);
    EXPECT_TRUE(options.m_bReserved);
}

TEST_F(GeneralOptions, aLoadedGroupHasTheFilesDefaults)
{
    CGeneralOptions options(m_store);
    options.Load();
    EXPECT_EQ(options.m_nMaxRetry, 1);
    EXPECT_FALSE(options.m_bMinimizeDragTask);
}

TEST_F(GeneralOptions, whatIsSavedIsLoadedAgainButForTheReservedFlag)
{
    CGeneralOptions options(m_store);
    options.m_nCheckUpdate = 2;
    options.m_bReserved = false;
    options.m_bShowDragZone = false;
    options.m_bMinimizeDragTask = true;
    options.m_bMonitorUrl = false;
    options.m_bAutoParseOriUrl = false;
    options.m_nMaxSimDownloads = 12;
    options.m_nMaxRetry = 0;
    options.Save();

    CGeneralOptions loaded(m_store);
    loaded.Load();
    EXPECT_EQ(loaded.m_nCheckUpdate, 2);
    EXPECT_TRUE(loaded.m_bReserved);
    EXPECT_FALSE(loaded.m_bShowDragZone);
    EXPECT_TRUE(loaded.m_bMinimizeDragTask);
    EXPECT_FALSE(loaded.m_bMonitorUrl);
    EXPECT_FALSE(loaded.m_bAutoParseOriUrl);
    EXPECT_EQ(loaded.m_nMaxSimDownloads, 12);
    EXPECT_EQ(loaded.m_nMaxRetry, 0);
}

TEST_F(GeneralOptions, aCloneIsIndependentAndHasEveryValue)
{
    CGeneralOptions options(m_store);
    options.m_bReserved = false;
    options.m_nMaxRetry = 8;
    const auto clone = options.Clone();
    options.m_nMaxRetry = 9;

    const auto &general = dynamic_cast<const CGeneralOptions &>(*clone);
    EXPECT_EQ(general.m_nMaxRetry, 8);
    EXPECT_FALSE(general.m_bReserved);
}

TEST_F(GeneralOptions, anotherKindOfGroupChangesNothing)
{
    CGeneralOptions options(m_store);
    options.m_nMaxRetry = 8;
    options.CopyFrom(OtherOptions());
    EXPECT_EQ(options.m_nMaxRetry, 8);
}

} // namespace
} // namespace tollivar::settings
