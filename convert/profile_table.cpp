#include "convert/profile_table.h"

#include "convert/builtin_profiles.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <tuple>

namespace tollivar::convert {

using namespace Qt::StringLiterals;
using tasks::ConversionOptions;

namespace {

constexpr std::array<QLatin1StringView, kProfileOptionCount> kOptionKeys = {
    "VideoSize"_L1,    "VideoBitRate"_L1,    "VideoFrameRate"_L1, "VideoCodec"_L1,
    "AudioBitRate"_L1, "AudioSampleRate"_L1, "AudioChannel"_L1,   "AudioCodec"_L1};

constexpr std::array<QString ConversionOptions::*, kProfileOptionCount> kOptionFields = {
    &ConversionOptions::m_csVideoSizeOpts,      &ConversionOptions::m_csVideoBitRateOpts,
    &ConversionOptions::m_csVideoFrameRateOpts, &ConversionOptions::m_csVideoCodecOpts,
    &ConversionOptions::m_csAudioBitRateOpts,   &ConversionOptions::m_csAudioSampleRateOpts,
    &ConversionOptions::m_csAudioChannelOpts,   &ConversionOptions::m_csAudioCodecOpts};

struct Line {
    QString key;
    QStringList values;
};

Line readLine(QStringView text)
{
    const qsizetype equals = text.indexOf(u'=');
    if (equals < 0) {
        return {text.trimmed().toString(), {}};
    }
    Line line{text.left(equals).trimmed().toString(), {}};
    const auto pieces = text.mid(equals + 1).split(u',');
    for (const QStringView piece : pieces) {
        line.values.append(piece.trimmed().toString());
    }
    return line;
}

void take(const Line &line, ConversionProfile &profile)
{
    const auto is = [&line](QLatin1StringView key) {
        return line.key.compare(key, Qt::CaseInsensitive) == 0;
    };
    if (is("ProfileName"_L1)) {
        profile.m_csProfileName = line.values.value(0);
    } else if (is("Type"_L1)) {
        profile.m_csType = line.values.value(0);
    } else if (is("ConvParam"_L1)) {
        profile.m_csConvParam = line.values.value(0);
    }
    for (std::size_t option = 0; option < kProfileOptionCount; ++option) {
        if (is(kOptionKeys[option])) {
            profile.options[option] = {line.values, {line.values.begin(), line.values.end()}};
        }
    }
}

auto namedLike(const QString &name)
{
    return [&name](const ConversionProfile &profile) { return profile.m_csProfileName == name; };
}

/// "640x480" and "1200" by their numbers; nothing for a word.
std::optional<std::tuple<int, int>> numbersOf(const QString &choice)
{
    const auto sides = choice.split(u'x');
    bool isNumber = false;
    const int first = sides[0].toInt(&isNumber);
    if (!isNumber || sides.size() > 2) {
        return std::nullopt;
    }
    const int second = sides.size() == 2 ? sides[1].toInt(&isNumber) : 0;
    return isNumber ? std::optional(std::tuple(first, second)) : std::nullopt;
}

/// Sorts before the other on the screen.
bool comesFirst(const QString &left, const QString &right)
{
    const auto rank = [](const QString &choice) {
        if (choice == u"Auto"_s) {
            return 0;
        }
        return numbersOf(choice) ? 1 : 2;
    };
    if (rank(left) != rank(right)) {
        return rank(left) < rank(right);
    }
    return rank(left) == 1 ? numbersOf(left) < numbersOf(right) : left < right;
}

} // namespace

ProfileTable ProfileTable::BuildProfiles(std::span<const QStringView> lines)
{
    ProfileTable table;
    ConversionProfile profile;
    for (const QStringView text : lines) {
        const Line line = readLine(text);
        if (line.key.compare("END"_L1, Qt::CaseInsensitive) != 0) {
            take(line, profile);
            continue;
        }
        if (std::none_of(table.m_profiles.begin(), table.m_profiles.end(),
                         namedLike(profile.m_csProfileName))) {
            table.m_profiles.push_back(profile);
        }
        profile = {};
    }
    return table;
}

ProfileTable ProfileTable::BuildProfiles()
{
    return BuildProfiles(builtInProfileLines());
}

bool ProfileTable::GetProfile(const QString &name, ConversionProfile &profile) const
{
    const auto found = std::find_if(m_profiles.begin(), m_profiles.end(), namedLike(name));
    if (found == m_profiles.end()) {
        return false;
    }
    profile = *found;
    return true;
}

bool ProfileTable::ApplyProfileDefaults(const QString &name, ConversionOptions &options) const
{
    ConversionProfile profile;
    if (!GetProfile(name, profile)) {
        return false;
    }
    options.m_csProfileName = name;
    options.m_csType = profile.m_csType;
    options.m_csConvParam = profile.m_csConvParam;
    for (std::size_t option = 0; option < kProfileOptionCount; ++option) {
        const QStringList &written = profile.options[option].written;
        if (!written.isEmpty()) {
            options.*kOptionFields[option] = written.front();
        }
    }
    return true;
}

ChoiceSets ProfileTable::CommonChoices(const QStringList &names) const
{
    ChoiceSets common;
    bool isFirst = true;
    for (const QString &name : names) {
        ConversionProfile profile;
        if (!GetProfile(name, profile)) {
            continue;
        }
        for (std::size_t option = 0; option < kProfileOptionCount; ++option) {
            const auto &choices = profile.options[option].choices;
            if (isFirst) {
                common[option] = choices;
            } else {
                std::erase_if(common[option],
                              [&choices](const QString &each) { return !choices.contains(each); });
            }
        }
        isFirst = false;
    }
    return common;
}

QStringList ProfileTable::namesMeantBy(const QString &text) const
{
    const QStringList all = names();
    return all.contains(text)
               ? QStringList{text}
               : all.filter(QRegularExpression(u'^' + QRegularExpression::escape(text),
                                               QRegularExpression::CaseInsensitiveOption));
}

QStringList ProfileTable::names() const
{
    QStringList names;
    for (const auto &profile : m_profiles) {
        names.append(profile.m_csProfileName);
    }
    return names;
}

QString ProfileTable::defaultName()
{
    return u"None - Original File Format (*.*)"_s;
}

QString ConversionOptions::*fieldOf(ProfileOption option)
{
    return kOptionFields[static_cast<std::size_t>(option)];
}

QStringList orderedForScreen(const std::set<QString> &choices)
{
    QStringList ordered(choices.begin(), choices.end());
    std::stable_sort(ordered.begin(), ordered.end(), comesFirst);
    return ordered;
}

} // namespace tollivar::convert
