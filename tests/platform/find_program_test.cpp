#include "platform/find_program.h"
#include "platform/paths.h"
#include "tests/support/processes.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::platform::findProgram;
using tollivar::test::misbehavingChildPath;
using tollivar::test::Sandbox;

/// A current directory and a PATH of the test's own.
class FindProgram : public testing::Test {
protected:
    FindProgram()
    {
        qputenv("PATH", QFile::encodeName(m_sandbox.file(u"path"_s)) + ":/usr/bin:/bin");
        QDir::setCurrent(m_sandbox.path());
    }
    ~FindProgram() override
    {
        qputenv("PATH", m_path);
        QDir::setCurrent(m_current);
    }
    FindProgram(const FindProgram &) = delete;
    FindProgram &operator=(const FindProgram &) = delete;

    QString program(const QString &name) const
    {
        const QString path = m_sandbox.write(name, "#!/bin/sh\n");
        EXPECT_EQ(chmod(QFile::encodeName(path).constData(), 0700), 0);
        return path;
    }

    Sandbox m_sandbox;
    QByteArray m_path = qgetenv("PATH");
    QString m_current = QDir::currentPath();
};

TEST_F(FindProgram, looksInTheProgramDirectoryFirst)
{
    program(u"misbehaving_child"_s);
    program(u"path/misbehaving_child"_s);
    EXPECT_EQ(findProgram(u"misbehaving_child"_s), misbehavingChildPath());
    EXPECT_EQ(findProgram(u"misbehaving_child"_s),
              tollivar::platform::programDirectory() + u"/misbehaving_child"_s);
}

TEST_F(FindProgram, looksInTheCurrentDirectoryBeforeThePath)
{
    const QString onPath = program(u"path/tool"_s);
    EXPECT_EQ(findProgram(u"tool"_s), onPath);
    const QString here = program(u"tool"_s);
    EXPECT_EQ(findProgram(u"tool"_s), here);
    EXPECT_EQ(findProgram(u"sh"_s), u"/usr/bin/sh"_s);
}

TEST_F(FindProgram, dropsTheForeignEndingWhenThePlainNameIsThere)
{
    const QString foreign = program(u"tool.exe"_s);
    EXPECT_EQ(findProgram(u"tool.exe"_s), foreign);
    const QString plain = program(u"tool"_s);
    EXPECT_EQ(findProgram(u"tool.exe"_s), plain);
    EXPECT_EQ(findProgram(u"TOOL.EXE"_s), std::nullopt);
    EXPECT_EQ(findProgram(u"tool.EXE"_s), plain);
}

TEST_F(FindProgram, takesBackslashesAsSeparators)
{
    const QString tool = program(u"Sub folder/tool"_s);
    EXPECT_EQ(findProgram(u".\\Sub folder\\tool.exe"_s), tool);
    EXPECT_EQ(findProgram(u"Sub folder\\tool"_s), tool);
}

TEST_F(FindProgram, takesAnAbsolutePathAsItIs)
{
    const QString tool = program(u"elsewhere/tool"_s);
    EXPECT_EQ(findProgram(tool), tool);
    EXPECT_EQ(findProgram(tool + u".exe"_s), tool);
}

TEST_F(FindProgram, doesNotLookForANameWithAFolderOnThePath)
{
    program(u"path/sub/tool"_s);
    EXPECT_EQ(findProgram(u"sub/tool"_s), std::nullopt);
}

TEST_F(FindProgram, findsNothingThatCannotBeRun)
{
    m_sandbox.write(u"text"_s, "no program");
    ASSERT_TRUE(QDir(m_sandbox.path()).mkdir(u"folder"_s));
    for (const QString &name : {QString(), u"."_s, u".."_s, u"/"_s, u"\\"_s, u".exe"_s, u"text"_s,
                                u"folder"_s, u"missing"_s, u"/no/such/program"_s,
                                QString(QChar::Null), u"sh\0x"_s, QString(100'000, u'x')}) {
        EXPECT_EQ(findProgram(name), std::nullopt) << qPrintable(name.left(40));
    }
}

} // namespace
