#pragma once

#include <QString>

namespace tollivar::tasks {

/// How a finished file is to be converted. Texts hold a value, "Auto" or nothing.
///
/// Names are those of the stored columns; `m_csAudioBitRateOpts` is stored without its prefix.
struct ConversionOptions {
    QString m_csVideoSizeOpts;       ///< frame size, "320x240"
    QString m_csVideoBitRateOpts;    ///< kbit/s
    QString m_csVideoFrameRateOpts;  ///< frames per second
    QString m_csAudioBitRateOpts;    ///< kbit/s
    QString m_csAudioSampleRateOpts; ///< Hz
    QString m_csAudioChannelOpts;    ///< number of channels
    QString m_csVideoCodecOpts;
    QString m_csAudioCodecOpts;
    QString m_csConvParam;   ///< the profile's extra converter arguments, "-vn"
    QString m_csType;        ///< output extension with its dot; empty: no conversion
    QString m_csProfileName; ///< the chosen profile
    int m_nTotalSeconds = 0; ///< length of the source, 0 unknown; not stored
    QString m_csOutputName;
    int m_nStartSeconds = 0;  ///< where the converted part begins; not stored
    int m_nLengthSeconds = 0; ///< how long the converted part is; not stored

    bool operator==(const ConversionOptions &) const = default;
};

} // namespace tollivar::tasks
