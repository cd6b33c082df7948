#include "tests/support/sound_device.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tollivar::test {

namespace {

constexpr auto kConfiguration = "ALSA_CONFIG_PATH";
constexpr auto kDriver = "CANBERRA_DRIVER";

QByteArray deviceWritingTo(const QString &path)
{
    return "pcm.nowhere { type null }\n"
           "pcm.!default { type file slave.pcm nowhere format raw file \"" +
           QFile::encodeName(path) + "\" }\n";
}

} // namespace

SoundDevice::SoundDevice()
{
    qputenv(kDriver, "alsa");
    plugIn();
}

SoundDevice::~SoundDevice()
{
    qunsetenv(kDriver);
    qunsetenv(kConfiguration);
}

QByteArray SoundDevice::heard() const
{
    return m_sandbox.read(QStringLiteral("heard"));
}

void SoundDevice::forget()
{
    EXPECT_TRUE(QFile::remove(m_sandbox.file(QStringLiteral("heard"))));
}

void SoundDevice::plugIn()
{
    describe(deviceWritingTo(m_sandbox.file(QStringLiteral("heard"))));
}

void SoundDevice::unplug()
{
    describe({});
}

void SoundDevice::hang()
{
    // Opening a pipe to write waits for somebody who reads.
    const QString pipe = m_sandbox.file(QStringLiteral("pipe"));
    EXPECT_EQ(mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
    describe(deviceWritingTo(pipe));
}

void SoundDevice::release()
{
    QFile pipe(m_sandbox.file(QStringLiteral("pipe")));
    EXPECT_TRUE(pipe.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    // To the end: who writes where nobody reads any more is ended by a signal.
    static_cast<void>(pipe.readAll());
}

void SoundDevice::describe(const QByteArray &devices)
{
    // A name of its own: a description that changes within one second may go unnoticed.
    const QString name = QStringLiteral("devices-%1.conf").arg(++m_descriptions);
    qputenv(kConfiguration, QFile::encodeName(m_sandbox.write(name, devices)));
}

} // namespace tollivar::test
