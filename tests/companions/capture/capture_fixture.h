#pragma once

#include "companions/capture/capture_engine.h"
#include "tests/support/http_site.h"
#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace tollivar::test {

/// Answers with a page.
[[nodiscard]] HttpSite::Script page(const QByteArray &html, const QByteArray &moreHeaders = {});
/// Answers with a file of that many bytes; what is in it does not matter to who only watches.
[[nodiscard]] HttpSite::Script medium(qsizetype size = 200'000,
                                      const QByteArray &mediaType = "video/mp4");
/// Sends the browser elsewhere.
[[nodiscard]] HttpSite::Script redirectTo(const QString &address);

/// A test with a site of its own, the real browser (or one that the test names), and a folder for
/// temporary files that must be empty again in the end, with no process left that works in it.
class CaptureFixture : public ::testing::Test {
protected:
    CaptureFixture();
    ~CaptureFixture() override;
    void TearDown() override;

    /// Drives this program instead of the browser from now on.
    static void useBrowser(const QString &path);
    /// The same, a script for the shell.
    void useBrowserScript(const QByteArray &script);

    /// Asks the engine for the media of a page; ended by the test's own limit, not the engine's.
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const QString &address, std::chrono::milliseconds limit = std::chrono::seconds(60),
         capture::MediaPreference preference = capture::MediaPreference::Video);
    /// The same for a page of the site; the test fails when nothing could be told.
    [[nodiscard]] std::vector<capture::MediaFound>
    mediaOf(const QByteArray &path,
            capture::MediaPreference preference = capture::MediaPreference::Video);

    [[nodiscard]] QString temporaryFolder() const { return m_sandbox.file(QStringLiteral("tmp")); }
    [[nodiscard]] const Sandbox &sandbox() const { return m_sandbox; }

    /// What stands in the folder for temporary files.
    [[nodiscard]] QStringList leftFiles() const;
    /// Command lines of processes, other than this one, that work in that folder.
    [[nodiscard]] QStringList leftProcesses() const;

    HttpSite site;
    platform::AutoResetEvent stop;

private:
    Sandbox m_sandbox;
    QByteArray m_oldPath;
};

} // namespace tollivar::test
