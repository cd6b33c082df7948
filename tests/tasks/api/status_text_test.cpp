#include "tasks/api/status_text.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::StatusText;
using tasks::statusText;

struct StatusRow {
    const char *name;
    int code;
    std::int64_t value;
    StatusText expected;
};

void PrintTo(const StatusRow &row, std::ostream *out)
{
    *out << row.name;
}

class StatusTextTable : public testing::TestWithParam<StatusRow> {};

TEST_P(StatusTextTable, givesTextAndKind)
{
    EXPECT_EQ(statusText(GetParam().code, GetParam().value), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    StatusText, StatusTextTable,
    testing::Values(
        StatusRow{"idle", 0, 0, {u"-"_s, 2}},
        StatusRow{"parsingAddress", 1, 0, {u"Parsing URL..."_s, 2}},
        StatusRow{"converting", 2, 47, {u"Converting - 47%"_s, 2}},
        StatusRow{"downloading", 3, 4725, {u"Downloading - 47.25%"_s, 2}},
        StatusRow{"downloadingAtZero", 3, 0, {u"Downloading - 0.00%"_s, 2}},
        StatusRow{"downloadingAll", 3, 10000, {u"Downloading - 100.00%"_s, 2}},
        StatusRow{"parsingTitle", 4, 0, {u"Parsing Title..."_s, 2}},
        StatusRow{"parsingFailed", 5, 0, {u"Parsing Failed"_s, 2}},
        StatusRow{"downloadFailed", 6, 0, {u"Download Failed"_s, 2}},
        StatusRow{"noNameForSeven", 7, 0, {QString(), 2}},
        StatusRow{"completed", 8, 0, {u"Completed"_s, 2}},
        StatusRow{"stopped", 9, 0, {u"Stopped"_s, 2}},
        StatusRow{"twelveKeepsTheText", 12, 0, {std::nullopt, 2}},
        StatusRow{"changedRecordKeepsTheText", 13, 0, {std::nullopt, 1}},
        StatusRow{"megabytesOfUnknownSize", 14, 1572864, {u"Downloading - 1.50MB"_s, 2}},
        StatusRow{"largestByteCount", 14, 0xFFFFFFFF, {u"Downloading - 4096.00MB"_s, 2}},
        StatusRow{"nineteenKeepsTheText", 19, 0, {std::nullopt, 2}},
        StatusRow{"unknownCode", 20, 5, {QString(), 2}},
        StatusRow{"negativeCode", -1, 5, {QString(), 2}}),
    [](const testing::TestParamInfo<StatusRow> &row) { return row.param.name; });

} // namespace tollivar::test
