#include "app/window/guide.h"
#include "platform/build_config.h"
#include "tests/support/noting_program.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::app {

using namespace Qt::StringLiterals;

class Guide : public ::testing::Test {
protected:
    test::Sandbox m_sandbox;
    test::DesktopOpener m_opener{m_sandbox};
};

TEST_F(Guide, isTheOneBesideThePrograms)
{
    const QString guide = m_sandbox.write(u"help/index.html"_s, "<!DOCTYPE html>");
    EXPECT_TRUE(openGuide(m_sandbox.path()));
    EXPECT_EQ(m_opener.waitForFirst(), guide);
}

TEST_F(Guide, isThePageOnTheWebWhereNoneLiesBesideThePrograms)
{
    EXPECT_TRUE(openGuide(m_sandbox.path()));
    EXPECT_EQ(m_opener.waitForFirst(), QString(platform::build::kHelpPage));
}

TEST_F(Guide, isToldMissingWithoutADesktopThatOpensIt)
{
    qputenv("PATH", {});
    EXPECT_FALSE(openGuide(m_sandbox.path()));
}

} // namespace tollivar::app
