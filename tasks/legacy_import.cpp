#include "tasks/legacy_import.h"

#include "platform/ini_file.h"
#include "tasks/task_columns.h"

#include <array>
#include <limits>
#include <map>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

/// The leading columns, then the three second counts.
constexpr std::size_t kNumberCount = kOlderColumnCount + 3;
constexpr std::size_t kLengthSecondsAt = kOlderColumnCount;
constexpr std::size_t kStartSecondsAt = kOlderColumnCount + 1;
constexpr std::size_t kTotalSecondsAt = kOlderColumnCount + 2;

using Numbers = std::array<std::int64_t, kNumberCount>;

/// Takes blanks, a sign and digits off the front of `text`; saturates far outside 32 bits.
std::optional<std::int64_t> takeNumber(QStringView &text)
{
    constexpr std::int64_t limit = std::int64_t{1} << 40;
    text = text.trimmed();
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+')) {
        text = text.sliced(1);
    }
    qsizetype digits = 0;
    std::int64_t value = 0;
    for (; digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9'; ++digits) {
        value = std::min(limit, value * 10 + (text[digits].unicode() - u'0'));
    }
    text = text.sliced(digits);
    if (digits == 0) {
        return std::nullopt;
    }
    return isNegative ? -value : value;
}

std::optional<Numbers> parseNumbers(QStringView line)
{
    Numbers numbers{};
    for (std::int64_t &number : numbers) {
        const std::optional<std::int64_t> taken = takeNumber(line);
        if (!taken) {
            return std::nullopt;
        }
        number = *taken;
    }
    return numbers;
}

/// Takes the first `length` characters off the front of `text`, as far as there are so many.
QString takeText(QStringView &text, std::int64_t length)
{
    const auto taken = static_cast<qsizetype>(std::clamp<std::int64_t>(length, 0, text.size()));
    QString result = text.first(taken).toString();
    text = text.sliced(taken);
    return result;
}

int seconds(std::int64_t number)
{
    using Int = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(number, Int::min(), Int::max()));
}

/// The number in front of "_len"; none for any other key.
std::optional<int> taskNumber(const QString &key)
{
    const QString suffix = u"_len"_s;
    if (!key.endsWith(suffix)) {
        return std::nullopt;
    }
    const QString digits = key.chopped(suffix.size());
    bool isNumber = false;
    const int number = digits.toInt(&isNumber);
    // Only the form without leading zeros or signs names a task.
    if (!isNumber || number < 0 || QString::number(number) != digits) {
        return std::nullopt;
    }
    return number;
}

} // namespace

std::optional<TaskInfo> parseOldTask(QStringView lengths, QStringView texts)
{
    const std::optional<Numbers> numbers = parseNumbers(lengths);
    if (!numbers) {
        return std::nullopt;
    }
    TaskInfo task;
    for (std::size_t at = 0; at < kOlderColumnCount; ++at) {
        const TaskColumn &column = kTaskColumns.at(at);
        const std::int64_t number = numbers->at(at);
        setColumnText(task, column,
                      isTextColumn(column) ? takeText(texts, number) : QString::number(number));
    }
    task.m_ConvOpts.m_nLengthSeconds = seconds(numbers->at(kLengthSecondsAt));
    task.m_ConvOpts.m_nStartSeconds = seconds(numbers->at(kStartSecondsAt));
    task.m_ConvOpts.m_nTotalSeconds = seconds(numbers->at(kTotalSecondsAt));
    task.nCompletedStatus = olderCompletedStatus(task);
    return task;
}

std::vector<TaskInfo> parseOldTasks(int count, const QHash<QString, QString> &lines)
{
    // By the keys that are there, not by the count: that may say anything.
    std::map<int, TaskInfo> found;
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        const std::optional<int> number = taskNumber(line.key());
        if (!number || *number >= count) {
            continue;
        }
        const QString texts = lines.value(QString::number(*number) + u"_string"_s);
        if (std::optional<TaskInfo> task = parseOldTask(line.value(), texts)) {
            found.emplace(*number, *std::move(task));
        }
    }
    std::vector<TaskInfo> tasks;
    tasks.reserve(found.size());
    for (auto &[number, task] : found) {
        tasks.push_back(std::move(task));
    }
    return tasks;
}

std::vector<TaskInfo> readOldList(const QString &path)
{
    const platform::IniFile list(path);
    const int count = platform::iniNumber(list.read(u"GENERAL", u"TaskCount", u"0"_s));
    return parseOldTasks(count, list.readSection(u"TASKINFO"));
}

int olderCompletedStatus(const TaskInfo &task)
{
    return task.dwDownloadSize >= task.dwSize && task.bFileCreated != 0 ? 1 : 0;
}

} // namespace tollivar::tasks
