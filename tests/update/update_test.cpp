#include "platform/build_config.h"
#include "platform/ini_file.h"
#include "tests/support/sandbox.h"
#include "update/update_info.h"
#include "update/update_schedule.h"
#include "update/version.h"

#include <gtest/gtest.h>

namespace tollivar::update {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(Version, partsAreComparedAsNumbers)
{
    EXPECT_GT(compareVersions(u"1.2.10.0", u"1.2.9.9"), 0);
    EXPECT_LT(compareVersions(u"1.2.9.9", u"1.2.10.0"), 0);
    EXPECT_EQ(compareVersions(u"1.0.0.0", u"1.0.0.0"), 0);
    EXPECT_GT(compareVersions(u"2.0.0.0", u"1.99.99.99"), 0);
    EXPECT_EQ(compareVersions(u"1", u"1.0.0.0"), 0);
    EXPECT_EQ(compareVersions(u"1.0.0.7beta", u"1.0.0.7"), 0);
    EXPECT_EQ(compareVersions(u"", u"0.0.0.0"), 0);
}

TEST(Version, absurdNumbersSaturate)
{
    EXPECT_GT(compareVersions(u"9999999999.x", u"1.0.0.0"), 0);
    EXPECT_EQ(compareVersions(u"9999999999.0", u"99999999999.0"), 0);
    EXPECT_LT(compareVersions(u"-5.0", u"0.0"), 0);
}

TEST(UpdateSchedule, aStartChecksByItsMode)
{
    const QDateTime now(QDate(2026, 11, 21), QTime(12, 0));
    EXPECT_FALSE(isCheckDue(0, now.addYears(-1), now));
    EXPECT_TRUE(isCheckDue(1, now, now));
    EXPECT_FALSE(isCheckDue(2, now.addDays(-7).addSecs(1), now));
    EXPECT_TRUE(isCheckDue(2, now.addDays(-7), now));
    EXPECT_TRUE(isCheckDue(2, now.addDays(1), now));
    EXPECT_FALSE(isCheckDue(3, now.addYears(-1), now));
    EXPECT_FALSE(isCheckDue(77, now.addYears(-1), now));
}

TEST(UpdateSchedule, twoModesCheckWithoutBeingAsked)
{
    for (const int mode : {1, 2}) {
        EXPECT_TRUE(checksByItself(mode));
    }
    for (const int mode : {-1, 0, 3, 4, 77}) {
        EXPECT_FALSE(checksByItself(mode));
    }
}

TEST(UpdateSchedule, failuresAreRetriedFiveTimesEachLater)
{
    RetrySchedule schedule(kRetryPauses);
    for (const auto wait : {5min, 10min, 20min, 30min, 30min}) {
        EXPECT_EQ(schedule.next(), wait);
    }
    EXPECT_EQ(schedule.next(), std::nullopt);
    schedule.reset();
    EXPECT_EQ(schedule.next(), 5min);
}

class UpdateInfoTest : public ::testing::Test {
protected:
    [[nodiscard]] UpdateInfo read(const QByteArray &content) const
    {
        return readUpdateInfo(m_sandbox.write(u"u.ini"_s, content));
    }
    test::Sandbox m_sandbox;
    const QString m_ownPage{platform::build::kDownloadPage};
};

TEST_F(UpdateInfoTest, holdsWhatTheServerSays)
{
    const UpdateInfo info = read("[Version]\r\nMain=2.1.0.0\r\nReleaseDate=2026-11-01\r\n"
                                 "WhatsNew=one\\r\\ntwo\r\nDownloadPage=https://get.example/x\r\n");
    EXPECT_EQ(info.version, u"2.1.0.0"_s);
    EXPECT_EQ(info.releaseDate, u"2026-11-01"_s);
    EXPECT_EQ(info.changes, u"one\r\ntwo"_s);
    EXPECT_EQ(info.page, u"https://get.example/x"_s);
}

TEST_F(UpdateInfoTest, whatIsMissingHasItsDefault)
{
    const UpdateInfo none{u"0.0.0.0"_s, {}, {}, m_ownPage};
    EXPECT_EQ(readUpdateInfo(m_sandbox.file(u"missing.ini"_s)), none);
    EXPECT_EQ(read(""), none);
    EXPECT_EQ(read("[Version\nMain"), none);
    EXPECT_EQ(read(QByteArray(300 * 1024, 'x')), none);
}

TEST_F(UpdateInfoTest, aPageThatIsNoWebAddressIsNotBelieved)
{
    for (const char *page : {"file:///etc/passwd", "javascript:alert(1)", "-x", "http://", "x y"}) {
        EXPECT_EQ(read(QByteArray("[Version]\nDownloadPage=") + page + '\n').page, m_ownPage);
    }
}

TEST_F(UpdateInfoTest, theTimeOfACheckIsKept)
{
    const QString path = m_sandbox.file(u"u.ini"_s);
    EXPECT_EQ(lastCheckTime(path), QDateTime(QDate(2011, 1, 1), QTime(21, 4, 54)));
    const QDateTime time(QDate(2026, 11, 21), QTime(3, 4, 5));
    storeCheckTime(path, time);
    EXPECT_EQ(lastCheckTime(path), time);
    m_sandbox.write(u"u.ini"_s, "[Check]\nLastCheckTime=yesterday\n");
    EXPECT_EQ(lastCheckTime(path), QDateTime(QDate(2011, 1, 1), QTime(21, 4, 54)));
}

TEST_F(UpdateInfoTest, whatElseThePersonsFileSaysOfChecksIsLeftAsItIs)
{
    const QString path = m_sandbox.write(u"u.ini"_s, "[Check]\nShowMsg=FALSE\n");
    storeCheckTime(path, QDateTime(QDate(2026, 11, 21), QTime(3, 4, 5)));
    const platform::IniFile file(path);
    EXPECT_EQ(file.read(u"Check", u"ShowMsg"), u"FALSE"_s);
    EXPECT_EQ(file.read(u"Check", u"LastCheckTime"), u"2026-11-21 03:04:05"_s);
}

TEST_F(UpdateInfoTest, aVersionIsDigitsAndDotsAndNothingElse)
{
    const auto version = [this](const QByteArray &main) {
        return read("[Version]\nMain=" + main + '\n').version;
    };
    EXPECT_EQ(version("2.1.0.0beta"), u"2.1.0.0"_s);
    EXPECT_EQ(version("2.1<b>.0.0</b>"), u"2.1"_s);
    EXPECT_EQ(version("2.1.0.0\t9"), u"2.1.0.0"_s);
    EXPECT_EQ(version("-5.0.0.0"), u"0.0.0.0"_s);
    EXPECT_EQ(version("<b>"), u"0.0.0.0"_s);
    EXPECT_EQ(version("\xD9\xA3.0"), u"0.0.0.0"_s) << "digits of another script";
    EXPECT_EQ(version(QByteArray(30'000, '9')), QString(43, u'9'));
}

TEST(UpdateQuestion, hasVersionAndChangesInTheirPlaces)
{
    const UpdateInfo info{u"2.0.0.0"_s, {}, u"a\r\nb %1"_s, {}};
    EXPECT_EQ(updateQuestion(info, u"(%1)\r\n%2\r\nYes?"_s), u"(2.0.0.0)\r\na\r\nb %1\r\nYes?"_s);
}

TEST(UpdateQuestion, showsAsManyChangesAsAScreenHasRoomFor)
{
    const auto shown = [](const QString &changes) {
        return updateQuestion({u"1"_s, {}, changes, {}}, u"%2"_s);
    };
    const QString twenty = u"x\r\n"_s.repeated(19) + u'x';
    EXPECT_EQ(shown(twenty), twenty);
    EXPECT_EQ(shown(twenty + u"\r\n"_s), twenty + u"\r\n\u2026"_s);
    EXPECT_EQ(shown(u"x\r\n"_s.repeated(10'000)), twenty + u"\r\n\u2026"_s);
    const QString full(1'200, u'x');
    EXPECT_EQ(shown(full), full);
    EXPECT_EQ(shown(full + u'x'), full + u"\r\n\u2026"_s);
    // Two rows and their line, thrice, and so on.
    EXPECT_EQ(shown(QString(61, u'x') + u"\r\n"_s + QString(30'000, u'y')),
              QString(61, u'x') + u"\r\n"_s + QString(18 * 60, u'y') + u"\r\n\u2026"_s);
    EXPECT_EQ(shown(QString(30'000, u'\u65B0')), QString(600, u'\u65B0') + u"\r\n\u2026"_s);
    // No half of a character is left.
    const QString smile = u"\U0001F600"_s;
    EXPECT_EQ(shown(u'x' + smile.repeated(2'000)), u'x' + smile.repeated(599) + u"\r\n\u2026"_s);
}

TEST(UpdateQuestion, showsNothingThatDisturbsItsSurroundings)
{
    const auto shown = [](const QString &changes) {
        return updateQuestion({u"1"_s, {}, changes, {}}, u"%2"_s);
    };
    EXPECT_EQ(shown(u"a\u202Eb\u2066c\u0007d\u0000e"_s), u"abcde"_s);
    EXPECT_EQ(shown(u"a\vb\fc\u2028d\u2029e\u0085f\rg\nh"_s),
              u"a\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh"_s);
    EXPECT_EQ(shown({}), QString());
}

} // namespace tollivar::update
