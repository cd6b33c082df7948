#include "tests/support/sample_site.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace tollivar::test {

namespace {

/// Ends a broken test; measures nothing.
constexpr int kLimitMs = 30'000;

} // namespace

SampleSite::SampleSite(const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(TOLLIVAR_SAMPLE_SITE), arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(kLimitMs)) {
    }
    m_base = QString::fromUtf8(m_process.readLine()).trimmed();
    EXPECT_TRUE(m_base.startsWith(u"http://127.0.0.1:")) << "the sample site did not start";
}

SampleSite::~SampleSite()
{
    m_process.closeWriteChannel();
    const bool hasEnded = m_process.state() == QProcess::NotRunning;
    if (!hasEnded && !m_process.waitForFinished(kLimitMs)) {
        ADD_FAILURE() << "the sample site does not end with its input";
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString SampleSite::otherAddress(const QString &path) const
{
    return QStringLiteral("http://localhost:%1/%2").arg(port()).arg(path);
}

quint16 SampleSite::port() const
{
    return static_cast<quint16>(QUrl(m_base).port());
}

} // namespace tollivar::test
