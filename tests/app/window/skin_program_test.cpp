#include "tests/app/window/program_on_desktop.h"
#include "tests/ui/skin/skin_zip.h"

#include <QDir>
#include <QDirIterator>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

constexpr QSize kBuiltInSize{900, 560};
constexpr QSize kFolderSize{800, 520};
constexpr QSize kArchiveSize{760, 480};

/// A copy of the program, with skins beside it that are told apart by the size of its window.
class ProgramWithSkins : public ProgramOnDesktop {
protected:
    void SetUp() override
    {
        ProgramOnDesktop::SetUp();
        QDir().mkpath(m_sandbox.file(u"copy/skins"_s));
        ASSERT_TRUE(
            QFile::copy(ProgramRun::pathOf(u"Tollivar"_s), m_sandbox.file(u"copy/Tollivar"_s)));
    }

    /// The files of the default skin, whose main window has that size.
    static std::vector<test::ZipEntry> skinOf(QSize size)
    {
        const QDir folder(ProgramRun::pathOf(u"skins/default"_s));
        std::vector<test::ZipEntry> entries;
        QDirIterator files(folder.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            entries.push_back({folder.relativeFilePath(file.fileName()).toUtf8(), file.readAll()});
            if (entries.back().name == "AppTollivar.xml") {
                const auto wanted = u"size=\"%1,%2\""_s.arg(size.width()).arg(size.height());
                EXPECT_TRUE(entries.back().content.contains("size=\"900,560\""));
                entries.back().content.replace("size=\"900,560\"", wanted.toUtf8());
            }
        }
        EXPECT_FALSE(entries.empty());
        return entries;
    }
    void addFolder() const
    {
        for (const test::ZipEntry &entry : skinOf(kFolderSize)) {
            m_sandbox.write(u"copy/skins/default/"_s + QString::fromUtf8(entry.name),
                            entry.content);
        }
    }
    void addArchive() const
    {
        test::writeZip(m_sandbox.file(u"copy/skins/default.zip"_s), skinOf(kArchiveSize));
    }

    QSize sizeAfterStart()
    {
        m_program = std::make_unique<ProgramRun>(m_sandbox, m_sandbox.file(u"copy/Tollivar"_s),
                                                 QStringList{});
        QSize size;
        test::waitUntil("the window's size", [&] {
            const QString window = m_desktop.window(kMainWindow);
            size = window.isEmpty() ? QSize() : m_desktop.place(window).size();
            return size.width() > kMinimum.width();
        });
        return size;
    }

    static constexpr QSize kMinimum{680, 380};
};

TEST_F(ProgramWithSkins, theFolderIsItsSkin)
{
    addFolder();
    EXPECT_EQ(sizeAfterStart(), kFolderSize);
    end();
}

TEST_F(ProgramWithSkins, theArchiveWinsOverTheFolder)
{
    addFolder();
    addArchive();
    EXPECT_EQ(sizeAfterStart(), kArchiveSize);
    EXPECT_EQ(m_program->errors().count("skin:"), 0);
    end();
}

TEST_F(ProgramWithSkins, theArchiveAloneIsEnough)
{
    addArchive();
    EXPECT_EQ(sizeAfterStart(), kArchiveSize);
    end();
}

TEST_F(ProgramWithSkins, aBrokenArchiveIsToldByItsNameAndTheBuiltInLookStandsIn)
{
    addFolder();
    const QString archive = m_sandbox.write(u"copy/skins/default.zip"_s, "PK\x03\x04 and no more");
    m_program =
        std::make_unique<ProgramRun>(m_sandbox, m_sandbox.file(u"copy/Tollivar"_s), QStringList{});
    // The note has the window's name.
    test::waitUntil("the note", [this] { return m_desktop.windowCount(kMainWindow) == 2; });
    EXPECT_TRUE(m_program->errors().contains("skin: " + archive.toUtf8()))
        << m_program->errors().constData();
    m_desktop.act({u"key"_s, u"Return"_s});
    test::waitUntil("the note to go", [this] { return m_desktop.windowCount(kMainWindow) == 1; });
    EXPECT_EQ(m_desktop.place(m_desktop.window(kMainWindow)).size(), kBuiltInSize);
    end();
}

} // namespace
} // namespace tollivar::app
