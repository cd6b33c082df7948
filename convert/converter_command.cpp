#include "convert/converter_command.h"

#include "platform/command_line_text.h"

#include <array>

namespace tollivar::convert {

using namespace Qt::StringLiterals;
using tasks::ConversionOptions;

namespace {

// The converter's own name follows its path, as its first argument.
const QString kConverter = u".\\Transcoder\\TransVert.exe transvert.exe "_s;

struct Option {
    QString ConversionOptions::*value = nullptr;
    QStringView name;
    QStringView suffix;
};

constexpr std::array kOptions = {
    Option{&ConversionOptions::m_csVideoCodecOpts, u"-vcodec ", u" "},
    Option{&ConversionOptions::m_csVideoSizeOpts, u"-s ", u" "},
    Option{&ConversionOptions::m_csVideoBitRateOpts, u"-b ", u"k "},
    Option{&ConversionOptions::m_csVideoFrameRateOpts, u"-r ", u"fps "},
    Option{&ConversionOptions::m_csAudioCodecOpts, u"-acodec ", u" "},
    Option{&ConversionOptions::m_csAudioSampleRateOpts, u"-ar ", u" "},
    Option{&ConversionOptions::m_csAudioBitRateOpts, u"-ab ", u"k "},
    Option{&ConversionOptions::m_csAudioChannelOpts, u"-ac ", u" "},
};

/// In quotation marks; a name that holds one itself is escaped as well.
QString quoted(const QString &path)
{
    const bool isPlain = !path.contains(u'"') && !path.contains(u'\\');
    return isPlain ? u'"' + path + u'"' : platform::joinCommandLine({path});
}

int secondsToConvert(const ConversionOptions &options)
{
    if (options.m_nTotalSeconds <= 0) {
        return 0;
    }
    const bool reachesEnd =
        options.m_nStartSeconds + options.m_nLengthSeconds > options.m_nTotalSeconds;
    return reachesEnd ? options.m_nTotalSeconds - options.m_nStartSeconds
                      : options.m_nLengthSeconds;
}

} // namespace

QString probeCommandLine(const QString &inputPath)
{
    return kConverter + u"-i "_s + quoted(inputPath);
}

QString convertedPath(const tasks::TaskInfo &task)
{
    return task.strOutputFolder + task.strOutputName + task.m_ConvOpts.m_csType;
}

ConverterCommand BuildCommandLine(const tasks::TaskInfo &task)
{
    const ConversionOptions &options = task.m_ConvOpts;
    QString line = probeCommandLine(task.outputPath()) + u' ' + options.m_csConvParam + u' ';
    for (const auto &[value, name, suffix] : kOptions) {
        const QString &text = options.*value;
        if (!text.isEmpty() && text != u"Auto"_s) {
            line += name.toString() + text + suffix.toString();
        }
    }
    if (options.m_nStartSeconds != 0) {
        line += u"-ss %1 "_s.arg(options.m_nStartSeconds);
    }
    if (options.m_nLengthSeconds != options.m_nTotalSeconds) {
        line += u"-t %1 "_s.arg(options.m_nLengthSeconds);
    }
    line += u"-y "_s + quoted(convertedPath(task)) + u' ';
    return {line, secondsToConvert(options)};
}

} // namespace tollivar::convert
