#include "app/cli/cli_arguments.h"

#include <functional>
#include <span>

namespace tollivar::app {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

/// One option of a command; `take` receives its value, or an empty text for a switch.
struct Option {
    QLatin1StringView name;
    bool hasValue = false;
    std::function<Result<void>(const QString &value)> take;
};

/// Null for an unknown name.
const Option *findOption(std::span<const Option> options, const QString &name)
{
    const auto found =
        std::find_if(options.begin(), options.end(),
                     [&name](const Option &candidate) { return candidate.name == name; });
    return found == options.end() ? nullptr : &*found;
}

/// Walks the arguments once: options go to their takers, the rest is handed back in order.
class OptionReader {
public:
    OptionReader(const QStringList &arguments, std::span<const Option> options)
        : m_arguments(arguments)
        , m_options(options)
    {
    }

    [[nodiscard]] Result<QStringList> read()
    {
        QStringList operands;
        for (; m_place < m_arguments.size(); ++m_place) {
            const QString &argument = m_arguments[m_place];
            if (argument == u"--") {
                return operands + m_arguments.mid(m_place + 1);
            }
            if (!argument.startsWith(u'-') || argument == u"-") {
                operands.append(argument);
            } else if (const auto taken = takeOption(argument); !taken) {
                return tl::unexpected(taken.error());
            }
        }
        return operands;
    }

private:
    [[nodiscard]] Result<void> takeOption(const QString &argument)
    {
        const qsizetype equals = argument.startsWith(u"--") ? argument.indexOf(u'=') : -1;
        const QString name = argument.left(equals);
        const Option *const option = findOption(m_options, name);
        if (option == nullptr) {
            return failure(ErrorKind::AskUser, QStringLiteral("unknown option %1").arg(name));
        }
        if (!option->hasValue) {
            return equals < 0
                       ? option->take({})
                       : failure(ErrorKind::AskUser, QStringLiteral("%1 takes no value").arg(name));
        }
        if (equals >= 0) {
            return option->take(argument.mid(equals + 1));
        }
        if (++m_place == m_arguments.size()) {
            return failure(ErrorKind::AskUser, QStringLiteral("%1 needs a value").arg(name));
        }
        return option->take(m_arguments[m_place]);
    }

    const QStringList &m_arguments;
    std::span<const Option> m_options;
    qsizetype m_place = 0;
};

Result<QStringList> readOptions(const QStringList &arguments, std::span<const Option> options)
{
    return OptionReader(arguments, options).read();
}

Option jsonOption(CliOutput &output)
{
    return {QLatin1StringView("--json"), false, [&output](const QString & /*value*/) {
                output = CliOutput::Json;
                return Result<void>();
            }};
}

Result<void> takeMode(const QString &value, CliMode &mode)
{
    if (value == u"video") {
        mode = CliMode::Video;
    } else if (value == u"flash") {
        mode = CliMode::Flash;
    } else if (value == u"direct") {
        mode = CliMode::Direct;
    } else {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("--mode is video, flash or direct, not \"%1\"").arg(value));
    }
    return {};
}

Result<void> takeQuality(const QString &value, int &quality)
{
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber || number < 0 || number > 6) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("--quality is a number from 0 to 6, not \"%1\"").arg(value));
    }
    quality = number;
    return {};
}

Result<void> takeText(const QString &value, QLatin1StringView option, QString &text)
{
    if (value.trimmed().isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("%1 is empty").arg(option));
    }
    text = value;
    return {};
}

Option profileOption(QString &profile)
{
    return {QLatin1StringView("--profile"), true, [&profile](const QString &value) {
                return takeText(value, QLatin1StringView("--profile"), profile);
            }};
}

Result<CliCommand> readDownload(const QStringList &arguments)
{
    CliDownload download;
    const Option options[] = {
        {QLatin1StringView("--folder"), true,
         [&](const QString &value) {
             return takeText(value, QLatin1StringView("--folder"), download.folder);
         }},
        {QLatin1StringView("--name"), true,
         [&](const QString &value) {
             return takeText(value, QLatin1StringView("--name"), download.name);
         }},
        {QLatin1StringView("--mode"), true,
         [&](const QString &value) { return takeMode(value, download.mode); }},
        {QLatin1StringView("--quality"), true,
         [&](const QString &value) { return takeQuality(value, download.quality); }},
        profileOption(download.profile),
        jsonOption(download.output),
    };
    const auto addresses = readOptions(arguments, options);
    if (!addresses) {
        return tl::unexpected(addresses.error());
    }
    download.addresses = *addresses;
    if (download.addresses.isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("download needs an address"));
    }
    if (!download.name.isEmpty() && download.addresses.size() > 1) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("--name goes with one address, not with %1")
                           .arg(download.addresses.size()));
    }
    return download;
}

Result<CliCommand> readRemove(const QStringList &arguments)
{
    CliRemove remove;
    const Option options[] = {{QLatin1StringView("--delete-file"), false, [&](const QString &) {
                                   remove.deleteFiles = true;
                                   return Result<void>();
                               }}};
    const auto ids = readOptions(arguments, options);
    if (!ids) {
        return tl::unexpected(ids.error());
    }
    if (ids->isEmpty()) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("remove needs the id of a task, as list shows it"));
    }
    for (const QString &id : *ids) {
        bool isNumber = false;
        remove.rows.push_back(id.toLongLong(&isNumber));
        if (!isNumber || remove.rows.back() < 1) {
            return failure(ErrorKind::AskUser,
                           QStringLiteral("\"%1\" is not the id of a task").arg(id));
        }
    }
    return remove;
}

Result<CliCommand> readProbe(const QStringList &arguments)
{
    CliProbe probe;
    const Option options[] = {jsonOption(probe.output)};
    const auto addresses = readOptions(arguments, options);
    if (!addresses) {
        return tl::unexpected(addresses.error());
    }
    if (addresses->size() != 1) {
        return failure(ErrorKind::AskUser, QStringLiteral("probe needs one address"));
    }
    probe.address = addresses->front();
    return probe;
}

Result<CliCommand> readConvert(const QStringList &arguments)
{
    CliConvert convert;
    const Option options[] = {profileOption(convert.profile), jsonOption(convert.output)};
    const auto files = readOptions(arguments, options);
    if (!files) {
        return tl::unexpected(files.error());
    }
    if (files->size() != 1) {
        return failure(ErrorKind::AskUser, QStringLiteral("convert needs one file"));
    }
    if (convert.profile.isEmpty()) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("convert needs --profile; profiles shows the names"));
    }
    convert.file = files->front();
    return convert;
}

/// For the commands that know nothing but "--json".
template<typename Command>
Result<CliCommand> readPlain(const QStringList &arguments, QLatin1StringView name)
{
    Command command;
    const Option options[] = {jsonOption(command.output)};
    const auto operands = readOptions(arguments, options);
    if (!operands) {
        return tl::unexpected(operands.error());
    }
    if (!operands->isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("%1 takes no arguments").arg(name));
    }
    return command;
}

} // namespace

Result<CliCommand> readCliArguments(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("no command given"));
    }
    const QString &command = arguments.front();
    const QStringList rest = arguments.mid(1);
    if (arguments.contains(u"--help") || command == u"-h" || command == u"help") {
        return CliHelp{};
    }
    if (command == u"--version") {
        return CliVersion{};
    }
    if (command == u"download") {
        return readDownload(rest);
    }
    if (command == u"run") {
        return readPlain<CliRun>(rest, QLatin1StringView("run"));
    }
    if (command == u"list") {
        return readPlain<CliList>(rest, QLatin1StringView("list"));
    }
    if (command == u"remove") {
        return readRemove(rest);
    }
    if (command == u"probe") {
        return readProbe(rest);
    }
    if (command == u"convert") {
        return readConvert(rest);
    }
    if (command == u"profiles") {
        return readPlain<CliProfiles>(rest, QLatin1StringView("profiles"));
    }
    return failure(ErrorKind::AskUser, QStringLiteral("unknown command \"%1\"").arg(command));
}

QString cliHelpText()
{
    return QStringLiteral(
        "usage: tollivar-cli COMMAND [OPTION...]\n"
        "\n"
        "  download ADDRESS...  capture what pages play, or fetch media files\n"
        "      --folder DIR       where the files go (default: the last folder used)\n"
        "      --name NAME        file name without its type (default: the page's title)\n"
        "      --mode MODE        video (default), flash, or direct: the address is the media "
        "file\n"
        "      --quality 0..6     for the video-sharing site: 1 HD, 2 1080p, 3 720p, 4 480p,\n"
        "                         5 360p, 6 240p; 0 (default) as the site decides\n"
        "      --profile NAME     convert what came; the beginning of the name is enough\n"
        "      --json             one JSON object for each event and line\n"
        "  run [--json]         start every task that is not completed, and wait for all\n"
        "  list [--json]        the tasks\n"
        "  remove ID... [--delete-file]\n"
        "                       take tasks out of the list, with their files if asked\n"
        "  probe ADDRESS [--json]\n"
        "                       find the media of a page, and download nothing\n"
        "  convert FILE --profile NAME [--json]\n"
        "                       convert a media file, beside itself\n"
        "  profiles [--json]    the formats that a file can be converted to\n"
        "  --version, --help\n"
        "\n"
        "The path of each finished file goes to standard output, one a line.\n"
        "Exit status: 0 all completed, 1 a task failed, 2 bad usage, 3 interrupted,\n"
        "4 the data directory or the task database cannot be used.\n");
}

} // namespace tollivar::app
