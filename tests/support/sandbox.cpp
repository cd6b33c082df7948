#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tollivar::test {

Sandbox::Sandbox() : m_directory(QDir::tempPath() + QStringLiteral("/tollivar-test-XXXXXX"))
{
    EXPECT_TRUE(m_directory.isValid());
}

QString Sandbox::write(const QString &name, const QByteArray &content) const
{
    const QString path = file(name);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    EXPECT_EQ(out.write(content), content.size());
    return path;
}

QByteArray Sandbox::read(const QString &name) const
{
    QFile in(file(name));
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

} // namespace tollivar::test
