#include "fetch/text/unique_file.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <set>

namespace tollivar::fetch {
namespace {

using test::Sandbox;

TEST(UniqueFile, aFreeNameIsTaken)
{
    const Sandbox sandbox;
    const auto file = createUniqueFile(sandbox.file(QStringLiteral("video.flv")), FileReuse::No);

    ASSERT_TRUE(file);
    EXPECT_EQ(file->baseName, QStringLiteral("video"));
    EXPECT_TRUE(QFile::exists(file->path));
}

TEST(UniqueFile, withTheFirstAlternativeTakenTheNextNumberFollows)
{
    const Sandbox sandbox;
    sandbox.write(QStringLiteral("video.flv"), "first");
    sandbox.write(QStringLiteral("video(0).flv"), "second");

    const auto file = createUniqueFile(sandbox.file(QStringLiteral("video.flv")), FileReuse::No);

    ASSERT_TRUE(file);
    EXPECT_EQ(file->baseName, QStringLiteral("video(1)"));
    EXPECT_EQ(file->path, sandbox.file(QStringLiteral("video(1).flv")));
    EXPECT_EQ(sandbox.read(QStringLiteral("video.flv")), QByteArray("first"));
    EXPECT_EQ(sandbox.read(QStringLiteral("video(0).flv")), QByteArray("second"));
}

TEST(UniqueFile, reuseTruncatesTheSameName)
{
    const Sandbox sandbox;
    sandbox.write(QStringLiteral("video.flv"), "old");

    const auto file = createUniqueFile(sandbox.file(QStringLiteral("video.flv")), FileReuse::Yes);

    ASSERT_TRUE(file);
    EXPECT_EQ(file->baseName, QStringLiteral("video"));
    EXPECT_EQ(sandbox.read(QStringLiteral("video.flv")), QByteArray());
}

TEST(UniqueFile, reuseDoesNotWriteThroughALink)
{
    const Sandbox sandbox;
    sandbox.write(QStringLiteral("precious"), "keep");
    sandbox.write(QStringLiteral("video(0).flv"), "somebody else's");
    ASSERT_TRUE(QFile::link(sandbox.file(QStringLiteral("precious")),
                            sandbox.file(QStringLiteral("video.flv"))));

    const auto file = createUniqueFile(sandbox.file(QStringLiteral("video.flv")), FileReuse::Yes);

    ASSERT_TRUE(file);
    EXPECT_EQ(file->baseName, QStringLiteral("video(1)"));
    EXPECT_EQ(sandbox.read(QStringLiteral("video(0).flv")), QByteArray("somebody else's"));
    EXPECT_EQ(sandbox.read(QStringLiteral("precious")), QByteArray("keep"));
}

TEST(UniqueFile, whereNothingCanBeCreatedItFails)
{
    EXPECT_FALSE(createUniqueFile(QStringLiteral("/no/such/folder/video.flv"), FileReuse::No));
}

TEST(UniqueFile, tasksThatStartTogetherGetDifferentFiles)
{
    constexpr int kThreads = 8;
    constexpr int kFiles = 25;
    const Sandbox sandbox;
    std::mutex mutex;
    std::set<QString> paths;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int file = 0; file < kFiles; ++file) {
                const auto unique =
                    createUniqueFile(sandbox.file(QStringLiteral("same.mp4")), FileReuse::No);
                const std::lock_guard lock(mutex);
                paths.insert(unique ? unique->path : QString());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(paths.size(), kThreads * kFiles);
    EXPECT_FALSE(paths.contains(QString()));
}

/// A folder where "clip.mp4" and its alternatives are taken, up to and without that counter.
void takeNames(const Sandbox &sandbox, int end)
{
    sandbox.write(QStringLiteral("clip.mp4"), "taken");
    for (int counter = 0; counter < end; ++counter) {
        QFile file(sandbox.file(QStringLiteral("clip(%1).mp4").arg(counter)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
}

TEST(UniqueFile, theLastOfTenThousandNamesIsStillTakenAndNoneAfterIt)
{
    const Sandbox sandbox;
    const QString path = sandbox.file(QStringLiteral("clip.mp4"));
    // The name itself is the first that is tried.
    constexpr int kLast = kMaximumNameTries - 2;
    takeNames(sandbox, kLast);

    EXPECT_EQ(freePath(path, TakePath::No), sandbox.file(QStringLiteral("clip(9998).mp4")));
    const auto file = createUniqueFile(path, FileReuse::No);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->baseName, QStringLiteral("clip(9998)"));

    const auto none = createUniqueFile(path, FileReuse::No);
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().kind, platform::ErrorKind::AskUser);
    EXPECT_TRUE(none.error().text.contains(path));
    EXPECT_FALSE(freePath(path, TakePath::No));
    EXPECT_FALSE(freePath(path, TakePath::Yes));
    EXPECT_FALSE(QFile::exists(sandbox.file(QStringLiteral("clip(9999).mp4"))));
    EXPECT_EQ(sandbox.read(QStringLiteral("clip.mp4")), QByteArray("taken"));
}

TEST(FreePath, isThePathItselfOrItsFirstFreeAlternative)
{
    const Sandbox sandbox;
    const QString path = sandbox.file(QStringLiteral("out.mp4"));

    EXPECT_EQ(freePath(path, TakePath::No), path);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(freePath(path, TakePath::Yes), path);
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_EQ(freePath(path, TakePath::No), sandbox.file(QStringLiteral("out(0).mp4")));
}

} // namespace
} // namespace tollivar::fetch
