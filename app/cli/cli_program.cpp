#include "app/cli/cli_program.h"

#include "app/cli/cli_arguments.h"
#include "app/cli/convert_command.h"
#include "app/cli/exit_status.h"
#include "app/cli/list_command.h"
#include "app/cli/probe_command.h"
#include "app/cli/profiles_command.h"
#include "app/cli/standard_streams.h"
#include "app/cli/task_commands.h"
#include "platform/build_config.h"

namespace tollivar::app {

namespace {

/// Carries each command out.
struct Runner {
    const QString &callerDirectory;

    int operator()(const CliDownload &download) const
    {
        return runDownload(download, callerDirectory);
    }
    int operator()(const CliRun &run) const { return runStored(run); }
    int operator()(const CliList &list) const { return runList(list); }
    int operator()(const CliRemove &remove) const { return runRemove(remove); }
    int operator()(const CliProbe &probe) const { return runProbe(probe); }
    int operator()(const CliConvert &convert) const { return runConvert(convert, callerDirectory); }
    int operator()(const CliProfiles &profiles) const { return runProfiles(profiles); }
    int operator()(const CliVersion & /*version*/) const
    {
        writeOutput("tollivar-cli " + QByteArray(platform::build::kVersion.data()) + '\n');
        return kAllCompleted;
    }
    int operator()(const CliHelp & /*help*/) const
    {
        writeOutput(cliHelpText().toUtf8());
        return kAllCompleted;
    }
};

} // namespace

int runCli(const QStringList &arguments, const QString &callerDirectory)
{
    const auto command = readCliArguments(arguments);
    if (!command) {
        complain(command.error().text + QStringLiteral("; see tollivar-cli --help"));
        return kBadUsage;
    }
    return std::visit(Runner{callerDirectory}, *command);
}

} // namespace tollivar::app
