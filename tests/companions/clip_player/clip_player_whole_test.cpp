#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;

TEST(ClipPlayer, badUsageIsToldWithStatusTwo)
{
    const test::Sandbox sandbox;
    for (const QStringList &arguments :
         {QStringList{u"-file"_s}, QStringList{u"a.mp4"_s}, QStringList{u"--script=x"_s}}) {
        test::ProgramRun program(sandbox, u"ClipPlayer"_s, arguments);
        EXPECT_EQ(program.finish(), 2);
        EXPECT_FALSE(program.errors().isEmpty());
        EXPECT_TRUE(program.output().isEmpty());
    }
}

} // namespace
} // namespace tollivar::player
