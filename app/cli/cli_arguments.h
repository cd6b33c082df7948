#pragma once

#include "platform/result.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace tollivar::app {

/// How the page of a `download` is treated.
enum class CliMode { Video, Flash, Direct };

/// Whether results are for a person or for a script.
enum class CliOutput { Text, Json };

struct CliDownload {
    QStringList addresses;
    QString folder; ///< as given; empty: the last folder used
    QString name;   ///< empty: named after the page's title
    CliMode mode = CliMode::Video;
    int quality = 0; ///< 0 to 6
    QString profile; ///< as given; empty: no conversion
    CliOutput output = CliOutput::Text;
};

struct CliRun {
    CliOutput output = CliOutput::Text;
};

struct CliList {
    CliOutput output = CliOutput::Text;
};

struct CliRemove {
    std::vector<std::int64_t> rows;
    bool deleteFiles = false;
};

struct CliProbe {
    QString address;
    CliOutput output = CliOutput::Text;
};

struct CliConvert {
    QString file; ///< as given
    QString profile;
    CliOutput output = CliOutput::Text;
};

struct CliProfiles {
    CliOutput output = CliOutput::Text;
};

struct CliVersion {};
struct CliHelp {};

using CliCommand = std::variant<CliDownload, CliRun, CliList, CliRemove, CliProbe, CliConvert,
                                CliProfiles, CliVersion, CliHelp>;

/// Reads the arguments after the program's name. "--" ends the options, so that an address may
/// begin with a dash.
/// Errors: AskUser with one sentence that says what is wrong.
[[nodiscard]] platform::Result<CliCommand> readCliArguments(const QStringList &arguments);

/// The text of `--help`.
[[nodiscard]] QString cliHelpText();

} // namespace tollivar::app
