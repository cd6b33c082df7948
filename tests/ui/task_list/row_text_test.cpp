#include "tests/ui/task_list/list_texts.h"
#include "ui/task_list/row_text.h"

#include <gtest/gtest.h>

#include <ostream>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;
using tasks::ErrorKind;
using tasks::TaskFailure;
using tasks::TaskState;

RowText textOf(const RowSource &source)
{
    return rowText(source, englishText);
}

struct StatusCase {
    const char *name;
    RowSource source;
    QString status;
    QString detail{};
};

void PrintTo(const StatusCase &row, std::ostream *out)
{
    *out << row.name;
}

RowSource in(TaskState state)
{
    return {.state = state, .retrySetting = 3};
}

RowSource downloading(float percentHundredths, std::int32_t secondsLeft, std::uint32_t bytes = 0)
{
    RowSource source = in(TaskState::Downloading);
    source.progress = {.percentHundredths = percentHundredths,
                       .secondsLeft = secondsLeft,
                       .bytesDownloaded = bytes};
    return source;
}

RowSource failed(TaskState state, TaskState stage, TaskFailure failure, int retryCount = 0)
{
    RowSource source = in(state);
    source.failedStage = stage;
    source.failure = failure;
    source.retryCount = retryCount;
    return source;
}

RowSource resting(TaskState state, std::uint32_t size, std::uint32_t done, int fileCreated)
{
    RowSource source = in(state);
    source.record.dwSize = size;
    source.record.dwDownloadSize = done;
    source.record.bFileCreated = fileCreated;
    return source;
}

constexpr TaskFailure kNotFound{.kind = ErrorKind::HttpStatus, .httpStatus = 404};
constexpr TaskState kParsing = TaskState::ResolvingPage;
constexpr TaskState kLoading = TaskState::Downloading;

class StatusTexts : public ::testing::TestWithParam<StatusCase> {};

TEST_P(StatusTexts, areThoseOfTheTable)
{
    const StatusCase &row = GetParam();
    const RowText text = textOf(row.source);
    EXPECT_EQ(text.status, row.status);
    EXPECT_EQ(text.detail, row.detail);
}

const std::vector<StatusCase> &statusTable()
{
    static const TaskFailure kNetwork{.kind = ErrorKind::Network};
    static const TaskFailure kNoFile{.kind = ErrorKind::CannotCreateFile};
    static const TaskFailure kNoAddress{.kind = ErrorKind::NoAddress};
    const auto http = [](std::uint32_t status) {
        return TaskFailure{.kind = ErrorKind::HttpStatus, .httpStatus = status};
    };
    static const std::vector<StatusCase> table = {
        {"Waiting", in(TaskState::Waiting), u"Waiting"_s},
        {"StoppingToRestart", in(TaskState::StoppingToRestart), u"Waiting"_s},
        {"ResolvingPage", in(TaskState::ResolvingPage), u"Parsing URL..."_s},
        {"TakingTitle", in(TaskState::TakingTitle), u"Parsing Title..."_s},
        {"Percent", downloading(3'742, 65), u"Downloading - 37.42%"_s},
        {"NothingYet", downloading(0, -1), u"Downloading - 0.00%"_s},
        {"Whole", downloading(10'000, 0), u"Downloading - 100.00%"_s},
        {"MegabytesAt65535", downloading(3'742, 65'535, 3'500'000), u"Downloading - 3.34MB"_s},
        {"PercentAt65534", downloading(3'742, 65'534, 3'500'000), u"Downloading - 37.42%"_s},
        {"FormerState", in(static_cast<TaskState>(6)), u""_s},
        {"Completed", in(TaskState::Completed), u"Completed"_s},
        {"New", in(TaskState::New), u"Stopped"_s},
        {"Stopped", in(TaskState::Stopped), u"Stopped"_s},
        {"Stopping", in(TaskState::Stopping), u"Stopped"_s},
        {"Removed", in(TaskState::Removed), u"Stopped"_s},
        {"UnknownState", in(static_cast<TaskState>(77)), u"Stopped"_s},
        {"StoppedWithItsWholeFile", resting(TaskState::Stopped, 10, 10, 1), u"Completed"_s},
        {"StoppedWithMoreThanItsFile", resting(TaskState::Stopped, 10, 11, 1), u"Completed"_s},
        {"StoppedWithPartOfItsFile", resting(TaskState::Stopped, 10, 9, 1), u"Stopped"_s},
        {"StoppedWithoutAFile", resting(TaskState::Stopped, 10, 10, 0), u"Stopped"_s},
        {"NewWithItsWholeFile", resting(TaskState::New, 0, 0, 1), u"Completed"_s},
        {"StoppingWithItsWholeFile", resting(TaskState::Stopping, 10, 10, 1), u"Completed"_s},
        {"ParsingFailed", failed(TaskState::Failed, kParsing, {}), u"Parsing Failed"_s},
        {"NoAddress", failed(TaskState::Failed, kParsing, kNoAddress), u"Parsing Failed"_s},
        {"DownloadingFailed", failed(TaskState::Failed, kLoading, {}), u"Downloading Failed"_s},
        {"TitleStageCountsAsDownload", failed(TaskState::Failed, TaskState::TakingTitle, {}),
         u"Downloading Failed"_s},
        {"NetworkError", failed(TaskState::Failed, kLoading, kNetwork), u"Downloading Failed"_s,
         u" - Network Error"_s},
        {"FileNotFound", failed(TaskState::Failed, kLoading, http(404)), u"Downloading Failed"_s,
         u" - File Not Found (HTTP 404 Error)"_s},
        {"AccessDenied", failed(TaskState::Failed, kLoading, http(401)), u"Downloading Failed"_s,
         u" - Access Denied (HTTP 401 Error)"_s},
        {"RequestForbidden", failed(TaskState::Failed, kLoading, http(403)),
         u"Downloading Failed"_s, u" - Request Forbidden (HTTP 403 Error)"_s},
        {"OtherStatusHasTwoBlanks", failed(TaskState::Failed, kLoading, http(500)),
         u"Downloading Failed"_s, u" -  (HTTP 500 Error)"_s},
        {"HugeStatusIsUnsigned", failed(TaskState::Failed, kLoading, http(4'294'967'295U)),
         u"Downloading Failed"_s, u" -  (HTTP 4294967295 Error)"_s},
        {"NoFileHasNoBlankBeforeTheDash", failed(TaskState::Failed, kLoading, kNoFile),
         u"Downloading Failed"_s, u"- Can Not Create File"_s},
        {"RetryLineReplacesTheReason", failed(TaskState::Failed, kLoading, http(404), 2),
         u"Downloading Failed"_s, u"Wait 5 secs before retry (2)"_s},
        {"LastRetryIsPending", failed(TaskState::Failed, kLoading, kNetwork, 3),
         u"Downloading Failed"_s, u"Wait 5 secs before retry (3)"_s},
        {"BeyondTheSettingTheReasonReturns", failed(TaskState::Failed, kLoading, kNetwork, 4),
         u"Downloading Failed"_s, u" - Network Error"_s},
        {"StartedWithoutRetry", failed(TaskState::Started, kLoading, kNotFound), u"Downloading"_s},
        {"StartedWithRetryPending", failed(TaskState::Started, kLoading, kNotFound, 2),
         u"Downloading Failed - File Not Found (HTTP 404 Error)"_s,
         u"Wait 5 secs before retry (2)"_s},
        {"StartedAfterNoFile", failed(TaskState::Started, kLoading, kNoFile, 1),
         u"Downloading Failed- Can Not Create File"_s, u"Wait 5 secs before retry (1)"_s},
        {"StartedAfterParsingFailed", failed(TaskState::Started, kParsing, kNoAddress, 1),
         u"Parsing Failed"_s, u"Wait 5 secs before retry (1)"_s},
        {"StartedBeyondTheSetting", failed(TaskState::Started, kLoading, kNotFound, 4),
         u"Downloading"_s},
    };
    return table;
}

INSTANTIATE_TEST_SUITE_P(All, StatusTexts, ::testing::ValuesIn(statusTable()),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(RowText, theNumberCountsFromOne)
{
    EXPECT_EQ(textOf({.ordinal = 41}).number, u"42"_s);
}

TEST(RowText, aRowWithoutATaskIsNumberOneWithoutRetries)
{
    const RowText text = textOf({});
    EXPECT_EQ(text.number, u"1"_s);
    EXPECT_EQ(text.detail, QString());
}

TEST(RowText, theSizeIsThatOfTheRunningDownload)
{
    RowSource source;
    source.record.dwSize = 80U << 20U;
    source.record.dwDownloadSize = 10U << 20U;
    EXPECT_EQ(textOf(source).size, u"10.00MB/80.00MB"_s);
    source.progress.bytesDownloaded = 15U << 20U;
    EXPECT_EQ(textOf(source).size, u"15.00MB/80.00MB"_s);
}

TEST(RowText, anUnknownSizeShowsSoAndThePercentageStays)
{
    RowSource source = downloading(0, -1, 5U << 20U);
    EXPECT_EQ(textOf(source).size, u"5.00MB/Unknown"_s);
    EXPECT_EQ(textOf(source).status, u"Downloading - 0.00%"_s);
    source.progress.secondsLeft = 65'535;
    EXPECT_EQ(textOf(source).status, u"Downloading - 5.00MB"_s);
}

TEST(RowText, theRestOfAKilobyteIsDropped)
{
    RowSource source;
    // 5 KB and 1,023 bytes are 0.0059 MB; without the rest 0.0049.
    source.record.dwSize = 5 * 1'024 + 1'023;
    source.record.dwDownloadSize = 1'023;
    EXPECT_EQ(textOf(source).size, u"0.00MB/0.00MB"_s);
    source.record.dwSize = 6 * 1'024;
    EXPECT_EQ(textOf(source).size, u"0.00MB/0.01MB"_s);
    source.record.dwSize = 4'294'967'294U;
    EXPECT_EQ(textOf(source).size, u"0.00MB/4096.00MB"_s);
}

TEST(RowText, onlyADownloadHasSpeedAndTimeLeft)
{
    RowSource source = downloading(100, 65);
    source.progress.bytesPerSecond = 1'536;
    EXPECT_EQ(textOf(source).speed, u"1.50 KB/s"_s);
    EXPECT_EQ(textOf(source).timeLeft, u"0:1:5"_s);
    source.state = TaskState::Failed;
    EXPECT_EQ(textOf(source).speed, QString());
    EXPECT_EQ(textOf(source).timeLeft, QString());
}

TEST(RowText, timesAreNotPadded)
{
    EXPECT_EQ(textOf(downloading(0, 3'661)).timeLeft, u"1:1:1"_s);
    EXPECT_EQ(textOf(downloading(0, 0)).timeLeft, u"0:0:0"_s);
    EXPECT_EQ(textOf(downloading(0, 65'535)).timeLeft, u"18:12:15"_s);
    EXPECT_EQ(textOf(downloading(0, 360'000)).timeLeft, u"100:0:0"_s);
}

TEST(RowText, secondsAreUnsignedAndTheirLargestIsUnknown)
{
    EXPECT_EQ(textOf(downloading(0, -1)).timeLeft, u"Unknown"_s);
    EXPECT_EQ(textOf(downloading(0, -2)).timeLeft, u"1193046:28:14"_s);
}

TEST(RowText, theBadgeHasNoDotAndTheTargetKeepsIt)
{
    RowSource source;
    source.record.strFileType = u".mpeg"_s;
    EXPECT_EQ(textOf(source).badge, u"MPEG"_s);
    EXPECT_EQ(textOf(source).target, u".MPEG"_s);
    source.record.strFileType = u".tar.gz"_s;
    EXPECT_EQ(textOf(source).badge, u"TARGZ"_s);
    EXPECT_EQ(textOf(source).target, u".TAR.GZ"_s);
    source.record.strFileType.clear();
    EXPECT_EQ(textOf(source).badge, QString());
}

TEST(RowText, theModeIsItsNameThenItsQuality)
{
    const auto mode = [](int low, int high) {
        RowSource source;
        source.record.nModeLow = low;
        source.record.nModeHigh = high;
        return textOf(source).mode;
    };
    EXPECT_EQ(mode(0, 0), u"Download Video"_s);
    EXPECT_EQ(mode(1, 1), u"Download Youtube HD Auto"_s);
    EXPECT_EQ(mode(1, 2), u"Download Youtube HD1080P"_s);
    EXPECT_EQ(mode(1, 3), u"Download Youtube HD720P"_s);
    EXPECT_EQ(mode(1, 4), u"Download Youtube 480P"_s);
    EXPECT_EQ(mode(2, 5), u"Download Flash 360P"_s);
    EXPECT_EQ(mode(6, 6), u"Download File Directly 240P"_s);
    EXPECT_EQ(mode(6, 7), u"Download File Directly"_s);
    EXPECT_EQ(mode(0, -1), u"Download Video"_s);
    EXPECT_EQ(mode(3, 0), QString());
    EXPECT_EQ(mode(3, 3), u" HD720P"_s);
}

TEST(RowText, thePathIsFolderNameAndType)
{
    RowSource source;
    source.record.strOutputFolder = u"/videos/"_s;
    source.record.strOutputName = u"clip"_s;
    EXPECT_EQ(textOf(source).path, u"/videos/clip.flv"_s);
}

TEST(RowText, aFinishedFileShowsItsConversion)
{
    RowSource source = in(TaskState::Completed);
    source.convertingPercent = 42;
    EXPECT_EQ(textOf(source).status, u"Converting - 42%"_s);
    EXPECT_EQ(textOf(source).bar, 4'200);
    source.convertingPercent = 250;
    EXPECT_EQ(textOf(source).bar, 10'000);
    source = resting(TaskState::Stopped, 10, 10, 1);
    source.convertingPercent = 7;
    EXPECT_EQ(textOf(source).status, u"Converting - 7%"_s);
}

TEST(RowText, aConversionThatFailedIsTheDetailOfACompletedTask)
{
    RowSource source = in(TaskState::Completed);
    source.conversionFailure = u"no sound in the file"_s;
    EXPECT_EQ(textOf(source).status, u"Completed"_s);
    EXPECT_EQ(textOf(source).detail, u"no sound in the file"_s);
    source.state = TaskState::Downloading;
    EXPECT_EQ(textOf(source).detail, QString());
}

TEST(RowText, theBarStandsOnlyWhereAPercentageDoes)
{
    RowSource source = downloading(3'700, 65);
    source.record.dwSize = 100;
    EXPECT_EQ(textOf(source).bar, 3'700);
    source.progress.percentHundredths = 12'000;
    EXPECT_EQ(textOf(source).bar, 10'000);
    source.progress.percentHundredths = -5;
    EXPECT_EQ(textOf(source).bar, 0);
    source.progress.secondsLeft = 65'535;
    EXPECT_EQ(textOf(source).bar, std::nullopt);
    for (const TaskState state : {TaskState::Waiting, TaskState::Failed, TaskState::Completed}) {
        EXPECT_EQ(textOf(in(state)).bar, std::nullopt);
    }
}

TEST(RowText, withoutASizeOnlyAStreamThatTellsItsPercentageHasABar)
{
    EXPECT_EQ(textOf(downloading(0, -1)).bar, std::nullopt);
    EXPECT_EQ(textOf(downloading(1'200, -1)).bar, 1'200);
}

/// Every status word in brackets, so that a test sees what was replaced.
QString bracketed(const QString &id)
{
    return u'[' + englishText(id) + u']';
}

TEST(StatusTranslation, replacesWordsInsideTheText)
{
    EXPECT_EQ(translatedStatus(u"Parsing URL..."_s, bracketed), u"[Parsing] URL..."_s);
    EXPECT_EQ(translatedStatus(u"Downloading Failed - Network Error"_s, bracketed),
              u"[Downloading] [Failed] - Network Error"_s);
    EXPECT_EQ(translatedStatus(u"Converting - 3%"_s, bracketed), u"[Converting] - 3%"_s);
    for (const char *word : {"Waiting", "Stopped", "Completed"}) {
        const QString english = QString::fromLatin1(word);
        EXPECT_EQ(translatedStatus(english, bracketed), u'[' + english + u']');
    }
}

TEST(StatusTranslation, goesWordByWordInItsOrder)
{
    // A translation that holds a later word is translated once more.
    const auto texts = [](const QString &id) {
        return id == u"strWaiting" ? u"Completed soon"_s : bracketed(id);
    };
    EXPECT_EQ(translatedStatus(u"Waiting"_s, texts), u"[Completed] soon"_s);
    const auto backwards = [](const QString &id) {
        return id == u"strFailed" ? u"Waiting"_s : bracketed(id);
    };
    EXPECT_EQ(translatedStatus(u"Parsing Failed"_s, backwards), u"[Parsing] Waiting"_s);
}

TEST(StatusTranslation, leavesTheDetailLineAlone)
{
    const auto text = [](const RowSource &source) { return rowText(source, bracketed); };
    const RowText failedText = text(failed(TaskState::Failed, kLoading, kNotFound));
    EXPECT_EQ(failedText.status, u"[Downloading] [Failed]"_s);
    EXPECT_EQ(failedText.detail, u" - File Not Found (HTTP 404 Error)"_s);
    RowSource source = in(TaskState::Completed);
    source.conversionFailure = u"Converting Failed"_s;
    EXPECT_EQ(text(source).detail, u"Converting Failed"_s);
}

TEST(StatusTranslation, aTextWithPlaceholdersIsJustText)
{
    RowSource source = failed(TaskState::Started, kLoading, kNotFound, 1);
    source.record.strOutputName = u"100%1 %s %2"_s;
    const auto texts = [](const QString &id) { return id == u"strFailed" ? u"%1%s"_s : id; };
    const RowText text = rowText(source, texts);
    EXPECT_EQ(text.name, u"100%1 %s %2"_s);
    EXPECT_EQ(text.status, u"strDownloading %1%s - File Not Found (HTTP 404 Error)"_s);
}

} // namespace
} // namespace tollivar::ui
