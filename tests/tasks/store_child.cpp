#include "tests/tasks/store_child.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;

namespace {

/// Ends a broken test; measures nothing.
constexpr int kLimitMs = 60000;

} // namespace

StoreChild::StoreChild(const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + u"/task_database_child"_s, arguments);
    EXPECT_TRUE(m_process.waitForStarted(kLimitMs));
}

StoreChild::~StoreChild()
{
    kill();
    m_process.waitForFinished(kLimitMs);
}

QString StoreChild::readLine()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kLimitMs)) {
            return {};
        }
    }
    return QString::fromUtf8(m_process.readLine()).chopped(1);
}

QString StoreChild::readAll()
{
    m_process.closeWriteChannel();
    EXPECT_TRUE(m_process.waitForFinished(kLimitMs));
    return QString::fromUtf8(m_process.readAll());
}

void StoreChild::kill()
{
    m_process.kill();
}

int StoreChild::finish()
{
    m_process.closeWriteChannel();
    const bool hasEnded =
        m_process.state() == QProcess::NotRunning || m_process.waitForFinished(kLimitMs);
    EXPECT_TRUE(hasEnded);
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

} // namespace tollivar::test
