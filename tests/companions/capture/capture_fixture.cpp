#include "tests/companions/capture/capture_fixture.h"

#include "tests/support/processes.h"

#include <QDir>
#include <QFile>

namespace tollivar::test {

HttpSite::Script page(const QByteArray &html, const QByteArray &moreHeaders)
{
    return [html, moreHeaders](HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n" + moreHeaders +
                  "Content-Length: " + QByteArray::number(html.size()) + "\r\n\r\n" + html);
    };
}

HttpSite::Script medium(qsizetype size, const QByteArray &mediaType)
{
    return answer(QByteArray(size, 'm'), mediaType);
}

HttpSite::Script redirectTo(const QString &address)
{
    return answerStatus("302 Found", "Location: " + address.toUtf8() + "\r\n");
}

CaptureFixture::CaptureFixture() : m_oldPath(qgetenv("PATH"))
{
    // Where the guardian lies.
    qputenv("PATH", QByteArray(TOLLIVAR_PROGRAM_DIRECTORY) + ':' + m_oldPath);
    QDir().mkpath(temporaryFolder());
    qputenv("TMPDIR", temporaryFolder().toUtf8());
}

CaptureFixture::~CaptureFixture()
{
    qputenv("PATH", m_oldPath);
    qunsetenv("TMPDIR");
    qunsetenv("TOLLIVAR_BROWSER");
}

void CaptureFixture::TearDown()
{
    EXPECT_EQ(leftProcesses(), QStringList());
    EXPECT_EQ(leftFiles(), QStringList());
}

void CaptureFixture::useBrowser(const QString &path)
{
    qputenv("TOLLIVAR_BROWSER", path.toUtf8());
}

void CaptureFixture::useBrowserScript(const QByteArray &script)
{
    const QString path = m_sandbox.write(QStringLiteral("browser"), "#!/bin/sh\n" + script + "\n");
    ASSERT_TRUE(
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    useBrowser(path);
}

platform::Result<std::vector<capture::MediaFound>>
CaptureFixture::find(const QString &address, std::chrono::milliseconds limit,
                     capture::MediaPreference preference)
{
    return capture::CaptureEngine().find({.address = address,
                                          .preference = preference,
                                          .deadline = std::chrono::steady_clock::now() + limit},
                                         stop);
}

std::vector<capture::MediaFound> CaptureFixture::mediaOf(const QByteArray &path,
                                                         capture::MediaPreference preference)
{
    const auto found = find(site.address(path), std::chrono::seconds(60), preference);
    if (!found) {
        ADD_FAILURE() << found.error().text.toStdString();
        return {};
    }
    return *found;
}

QStringList CaptureFixture::leftFiles() const
{
    return QDir(temporaryFolder())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QStringList CaptureFixture::leftProcesses() const
{
    return processesNaming(temporaryFolder().toUtf8());
}

} // namespace tollivar::test
