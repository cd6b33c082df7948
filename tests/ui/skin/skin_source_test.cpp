#include "tests/support/sandbox.h"
#include "tests/ui/skin/skin_zip.h"
#include "ui/skin/skin_archive.h"
#include "ui/skin/skin_document.h"
#include "ui/skin/skin_source.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

class SkinSourceTest : public ::testing::Test {
protected:
    test::Sandbox m_sandbox;

    [[nodiscard]] QString zip(const std::vector<test::ZipEntry> &entries) const
    {
        const QString path = m_sandbox.file(u"skin.zip"_s);
        test::writeZip(path, entries);
        return path;
    }
};

TEST_F(SkinSourceTest, readsFilesOfAFolder)
{
    m_sandbox.write(u"skin/a.xml"_s, "<Window/>");
    const auto source = SkinSource::folder(m_sandbox.file(u"skin"_s));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->read(u"a.xml"_s).value(), "<Window/>");
    EXPECT_FALSE(source->read(u"b.xml"_s));
}

TEST_F(SkinSourceTest, aMissingFolderIsToldByItsName)
{
    const auto source = SkinSource::folder(m_sandbox.file(u"nowhere"_s));
    ASSERT_FALSE(source);
    EXPECT_TRUE(source.error().text.contains(u"nowhere"_s));
}

TEST_F(SkinSourceTest, noNameLeadsOutOfTheSkin)
{
    m_sandbox.write(u"secret.xml"_s, "<Window/>");
    m_sandbox.write(u"skin/a.xml"_s, "<Window/>");
    ASSERT_TRUE(QFile::link(m_sandbox.file(u"secret.xml"_s), m_sandbox.file(u"skin/link.xml"_s)));
    const auto source = SkinSource::folder(m_sandbox.file(u"skin"_s));
    ASSERT_TRUE(source);
    for (const QString &name : {u"../secret.xml"_s, u"x/../../secret.xml"_s, u"link.xml"_s,
                                m_sandbox.file(u"secret.xml"_s), u""_s, u"."_s, u".."_s}) {
        EXPECT_FALSE(source->read(name)) << name.toStdString();
        EXPECT_EQ(source->imagePath(name), QString()) << name.toStdString();
    }
}

TEST_F(SkinSourceTest, aFileBeyondTheLimitIsNotRead)
{
    m_sandbox.write(u"skin/a.xml"_s, QByteArray(kMaximumSkinFile + 1, ' '));
    EXPECT_FALSE(SkinSource::folder(m_sandbox.file(u"skin"_s)).value().read(u"a.xml"_s));
}

TEST_F(SkinSourceTest, anImageBombMakesTheSkinUnusable)
{
    QImage image(5'000, 2, QImage::Format_Mono);
    image.fill(0);
    m_sandbox.write(u"skin/a.xml"_s, "<Window/>");
    ASSERT_TRUE(image.save(m_sandbox.file(u"skin/bomb.png"_s)));
    const auto source = SkinSource::folder(m_sandbox.file(u"skin"_s));
    ASSERT_FALSE(source);
    EXPECT_TRUE(source.error().text.contains(u"bomb.png"_s));
}

TEST_F(SkinSourceTest, aDrawingOfCopiesOfItselfMakesTheSkinUnusable)
{
    m_sandbox.write(u"skin/a.svg"_s, "<svg><use href='#a'/></svg>");
    EXPECT_FALSE(SkinSource::folder(m_sandbox.file(u"skin"_s)));
    m_sandbox.write(u"skin/a.svg"_s, QByteArray(300 * 1024, ' '));
    EXPECT_FALSE(SkinSource::folder(m_sandbox.file(u"skin"_s)));
    m_sandbox.write(u"skin/a.svg"_s, "<svg/>");
    EXPECT_TRUE(SkinSource::folder(m_sandbox.file(u"skin"_s)));
}

TEST_F(SkinSourceTest, readsFilesOfAnArchiveAndCleansUpAfterItself)
{
    QString root;
    {
        const auto source =
            SkinSource::archive(zip({{"a.xml", "<Window/>"}, {"img/b.svg", "<svg/>"}}));
        ASSERT_TRUE(source);
        root = source->root();
        EXPECT_EQ(source->read(u"a.xml"_s).value(), "<Window/>");
        EXPECT_TRUE(QFile::exists(source->imagePath(u"img/b.svg"_s)));
    }
    EXPECT_FALSE(QDir(root).exists());
}

TEST_F(SkinSourceTest, anArchiveThatLeadsElsewhereIsRefused)
{
    for (const char *name :
         {"../evil.xml", "/evil.xml", "a/../../evil.xml", "a\\..\\evil.xml", "C:evil.xml"}) {
        const auto source = SkinSource::archive(zip({{name, "x"}}));
        ASSERT_FALSE(source) << name;
        EXPECT_TRUE(source.error().text.contains(u"leads out of the skin"_s)) << name;
    }
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"evil.xml"_s)));
}

TEST_F(SkinSourceTest, anArchiveWithALinkIsRefused)
{
    EXPECT_FALSE(SkinSource::archive(zip({{"link.xml", "/etc/passwd", test::ZipKind::Link}})));
}

TEST_F(SkinSourceTest, anArchiveWithAHugeEntryIsRefused)
{
    const auto source =
        SkinSource::archive(zip({{"big.xml", QByteArray(kMaximumUnpackedFile + 1, ' ')}}));
    ASSERT_FALSE(source);
    EXPECT_TRUE(source.error().text.contains(u"too large"_s));
}

TEST_F(SkinSourceTest, anArchiveThatIsHugeAsAWholeIsRefused)
{
    std::vector<test::ZipEntry> entries;
    for (int i = 0; i < 5; ++i) {
        entries.push_back({"f" + QByteArray::number(i), QByteArray(kMaximumUnpackedFile - 1, ' ')});
    }
    EXPECT_FALSE(SkinSource::archive(zip(entries)));
}

TEST_F(SkinSourceTest, whatIsNoArchiveIsRefused)
{
    EXPECT_FALSE(SkinSource::archive(m_sandbox.write(u"a.zip"_s, "PK\x03\x04 and no more")));
    EXPECT_FALSE(SkinSource::archive(m_sandbox.file(u"missing.zip"_s)));
}

TEST_F(SkinSourceTest, cutArchivesAreRefused)
{
    const QString path = zip({{"a.xml", "<Window/>"}, {"b.xml", QByteArray(300, 'b')}});
    const QByteArray whole = m_sandbox.read(u"skin.zip"_s);
    for (qsizetype length = 0; length < whole.size(); length += 7) {
        m_sandbox.write(u"cut.zip"_s, whole.left(length));
        EXPECT_FALSE(SkinSource::archive(m_sandbox.file(u"cut.zip"_s)));
    }
}

} // namespace tollivar::DuiLib
