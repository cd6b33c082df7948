#include "companions/transvert/converter_arguments.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace tollivar::transvert {

using namespace Qt::StringLiterals;
using platform::ErrorKind;

namespace {

/// Old names of options with a value, and what they are called today.
const QHash<QString, QString> &optionNames()
{
    static const QHash<QString, QString> names = {
        {u"-b"_s, u"-b:v"_s},      {u"-r"_s, u"-r"_s},        {u"-s"_s, u"-s"_s},
        {u"-vcodec"_s, u"-c:v"_s}, {u"-acodec"_s, u"-c:a"_s}, {u"-ar"_s, u"-ar"_s},
        {u"-ab"_s, u"-b:a"_s},     {u"-ac"_s, u"-ac"_s},      {u"-ss"_s, u"-ss"_s},
        {u"-t"_s, u"-t"_s},        {u"-f"_s, u"-f"_s}};
    return names;
}

/// The sample rates that a type of file takes; empty when it takes all.
std::vector<int> sampleRates(const QString &type)
{
    if (type == u"swf"_s || type == u"flv"_s) {
        return {11'025, 22'050, 44'100};
    }
    if (type == u"mp3"_s || type == u"avi"_s || type == u"wmv"_s) {
        return {8'000, 11'025, 16'000, 22'050, 32'000, 44'100, 48'000};
    }
    return {};
}

/// Whether a type of file has no place for more than two channels.
bool isStereoAtMost(const QString &type)
{
    return QStringList{u"mp3"_s, u"wmv"_s, u"flv"_s, u"swf"_s, u"avi"_s}.contains(type);
}

QString nearestRate(const QString &rate, const QString &type, QStringList &notes)
{
    const auto rates = sampleRates(type);
    const int wanted = rate.toInt();
    if (rates.empty() || wanted <= 0) {
        return rate;
    }
    const int nearest =
        *std::min_element(rates.begin(), rates.end(), [wanted](int left, int right) {
            return std::abs(left - wanted) < std::abs(right - wanted);
        });
    if (nearest != wanted) {
        notes.append(
            u"%1 Hz is not possible in this format, %2 Hz is used"_s.arg(wanted).arg(nearest));
    }
    return QString::number(nearest);
}

/// Both sides even, as most codecs want them.
QString evenSize(const QString &size, QStringList &notes)
{
    const auto sides = size.split(u'x');
    if (sides.size() != 2) {
        return size;
    }
    const int width = sides[0].toInt() / 2 * 2;
    const int height = sides[1].toInt() / 2 * 2;
    QString even = u"%1x%2"_s.arg(width).arg(height);
    if (even != size) {
        notes.append(u"the size %1 is odd, %2 is used"_s.arg(size, even));
    }
    return even;
}

QString translated(const QString &option, const QString &value, const QString &type,
                   QStringList &notes)
{
    if (option == u"-r"_s && value.endsWith(u"fps"_s)) {
        return value.chopped(3);
    }
    if (option == u"-ar"_s) {
        return nearestRate(value, type, notes);
    }
    return option == u"-s"_s ? evenSize(value, notes) : value;
}

} // namespace

platform::Result<ConverterRequest> readArguments(const QStringList &arguments)
{
    ConverterRequest request;
    const bool hasNameTwice =
        !arguments.isEmpty() &&
        arguments.front().compare(u"transvert.exe"_s, Qt::CaseInsensitive) == 0;
    for (qsizetype i = hasNameTwice ? 1 : 0; i < arguments.size(); ++i) {
        const QString &name = arguments[i];
        if (name == u"-vn"_s) {
            request.options.append(name);
            continue;
        }
        const bool hasValue = i + 1 < arguments.size();
        if (!hasValue || (name != u"-i"_s && name != u"-y"_s && !optionNames().contains(name))) {
            return platform::failure(ErrorKind::AskUser, hasValue ? u"unknown option %1"_s.arg(name)
                                                                  : u"%1 has no value"_s.arg(name));
        }
        const QString &value = arguments[++i];
        if (name == u"-i"_s) {
            request.input = value;
        } else if (name == u"-y"_s) {
            request.output = value;
        } else {
            request.options += {name, value};
        }
    }
    if (request.input.isEmpty()) {
        return platform::failure(ErrorKind::AskUser, u"there is no -i FILE"_s);
    }
    return request;
}

QStringList ffmpegArguments(const ConverterRequest &request, const QString &target,
                            QStringList &notes)
{
    // "file:" keeps every name from being read as an option or an address.
    QStringList arguments{u"-nostdin"_s,  u"-hide_banner"_s, u"-protocol_whitelist"_s,
                          u"file,pipe"_s, u"-i"_s,           u"file:"_s + request.input};
    if (request.output.isEmpty()) {
        return arguments;
    }
    arguments =
        QStringList{u"-nostats"_s, u"-progress"_s, u"pipe:1"_s, u"-stats_period"_s, u"0.2"_s} +
        arguments;
    const QString type = QFileInfo(request.output).suffix().toLower();
    bool hasSize = false;
    bool hasChannels = false;
    for (qsizetype i = 0; i < request.options.size(); ++i) {
        const QString &name = request.options[i];
        if (name == u"-vn"_s) {
            arguments.append(name);
            continue;
        }
        hasSize = hasSize || name == u"-s"_s;
        hasChannels = hasChannels || name == u"-ac"_s;
        arguments +=
            {optionNames().value(name), translated(name, request.options[++i], type, notes)};
    }
    if (!hasSize && !request.options.contains(u"-vn"_s)) {
        arguments += {u"-vf"_s, u"scale=trunc(iw/2)*2:trunc(ih/2)*2"_s};
    }
    if (!hasChannels && isStereoAtMost(type)) {
        arguments += {u"-af"_s, u"aformat=channel_layouts=mono|stereo"_s};
    }
    if (type == u"mp4"_s) {
        arguments += {u"-pix_fmt"_s, u"yuv420p"_s};
    }
    arguments += {u"-y"_s, u"file:"_s + target};
    return arguments;
}

} // namespace tollivar::transvert
