#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <set>

namespace tollivar::convert {

/// The encoding options that a profile offers choices for, in the order of the table.
enum class ProfileOption : std::size_t {
    VideoSize,
    VideoBitRate,
    VideoFrameRate,
    VideoCodec,
    AudioBitRate,
    AudioSampleRate,
    AudioChannel,
    AudioCodec,
};

inline constexpr std::size_t kProfileOptionCount = 8;

/// One option's values.
struct OptionValues {
    QStringList written;       ///< as in the table; the first one is the default
    std::set<QString> choices; ///< the distinct ones, the default included
};

/// A named target format.
struct ConversionProfile {
    QString m_csProfileName;
    QString m_csType;      ///< output extension with its dot; empty: no conversion
    QString m_csConvParam; ///< the converter's extra arguments
    std::array<OptionValues, kProfileOptionCount> options;

    [[nodiscard]] const OptionValues &values(ProfileOption option) const
    {
        return options[static_cast<std::size_t>(option)];
    }
};

} // namespace tollivar::convert
