#include "platform/sound.h"
#include "tests/support/sound_device.h"
#include "tests/support/wait_until.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

namespace {

/// The program's own: a header of 44 bytes, then the samples.
const QString kFile = QStringLiteral(TOLLIVAR_SOUND);

QByteArray samples()
{
    constexpr qsizetype kHeader = 44;
    QFile file(kFile);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().mid(kHeader);
}

} // namespace

class SoundTest : public ::testing::Test {
protected:
    /// Until the sound is handed over, not until it is over.
    void play(const QString &path)
    {
        m_sound.play(path);
        test::waitUntil("the sound to be handed over", [this] { return !m_sound.isBusy(); });
    }
    void waitUntilHeard() const
    {
        test::waitUntil("the sound", [this] { return m_device.heard() == samples(); });
    }

    test::SoundDevice m_device;
    Sound m_sound;
};

TEST_F(SoundTest, isHeardAsItIsInTheFile)
{
    play(kFile);
    waitUntilHeard();
}

TEST_F(SoundTest, isHeardEachTime)
{
    for (int times = 1; times <= 3; ++times) {
        play(kFile);
        waitUntilHeard();
        m_device.forget();
    }
}

TEST_F(SoundTest, isSilentWithoutADeviceAndHeardWhenOneComes)
{
    m_device.unplug();
    play(kFile);
    EXPECT_EQ(m_device.heard(), QByteArray());
    m_device.plugIn();
    play(kFile);
    waitUntilHeard();
}

TEST_F(SoundTest, isSilentWithoutASoundService)
{
    qputenv("CANBERRA_DRIVER", "nowhere");
    play(kFile);
    EXPECT_EQ(m_device.heard(), QByteArray());
}

TEST_F(SoundTest, isSilentWhenTheFileHoldsNone)
{
    const test::Sandbox sandbox;
    play(sandbox.file(u"missing.wav"_s));
    play(sandbox.write(u"text.wav"_s, "no sound at all"));
    EXPECT_EQ(m_device.heard(), QByteArray());
    play(kFile);
    waitUntilHeard();
}

TEST_F(SoundTest, mayGoWhileItIsStillHeard)
{
    // Often enough to meet the moment at which the player's thread ends.
    for (int times = 0; times < 50; ++times) {
        Sound sound;
        sound.play(kFile);
        while (sound.isBusy()) {
        }
    }
    waitUntilHeard();
}

TEST_F(SoundTest, neverWaitsForADeviceThatHangs)
{
    m_device.hang();
    QElapsedTimer waited;
    waited.start();
    {
        Sound sound;
        sound.play(kFile);
        sound.play(kFile);
        EXPECT_TRUE(sound.isBusy());
    }
    // The device would hang for ever.
    EXPECT_LT(waited.elapsed(), 5'000);
    m_device.release();
}

} // namespace tollivar::platform
