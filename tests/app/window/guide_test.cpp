#include "app/window/guide.h"
#include "platform/build_config.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::app {

using namespace Qt::StringLiterals;

/// A desktop whose opener only notes what it is to open.
class Guide : public ::testing::Test {
protected:
    void SetUp() override
    {
        const QString opener =
            m_sandbox.write(u"bin/xdg-open"_s, "#!/bin/sh\nprintf %s \"$1\" >\"$0.new\"\n"
                                               "mv \"$0.new\" \"$0.opened\"\n");
        ASSERT_TRUE(QFile::setPermissions(opener, QFile::ReadOwner | QFile::ExeOwner));
        m_path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_sandbox.file(u"bin"_s)) + ':' + m_path);
    }
    void TearDown() override { qputenv("PATH", m_path); }

    QString opened() const
    {
        const QString note = u"bin/xdg-open.opened"_s;
        test::waitUntil("the desktop opens something",
                        [&] { return QFile::exists(m_sandbox.file(note)); });
        return QString::fromUtf8(m_sandbox.read(note));
    }

    test::Sandbox m_sandbox;
    QByteArray m_path;
};

TEST_F(Guide, isTheOneBesideThePrograms)
{
    const QString guide = m_sandbox.write(u"help/index.html"_s, "<!DOCTYPE html>");
    EXPECT_TRUE(openGuide(m_sandbox.path()));
    EXPECT_EQ(opened(), guide);
}

TEST_F(Guide, isThePageOnTheWebWhereNoneLiesBesideThePrograms)
{
    EXPECT_TRUE(openGuide(m_sandbox.path()));
    EXPECT_EQ(opened(), QString(platform::build::kHelpPage));
}

TEST_F(Guide, isToldMissingWithoutADesktopThatOpensIt)
{
    qputenv("PATH", {});
    EXPECT_FALSE(openGuide(m_sandbox.path()));
}

} // namespace tollivar::app
