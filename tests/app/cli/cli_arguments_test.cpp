#include "app/cli/cli_arguments.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

template<typename Command>
Command read(const QStringList &arguments)
{
    const auto command = readCliArguments(arguments);
    EXPECT_TRUE(command) << (command ? "" : qPrintable(command.error().text));
    EXPECT_TRUE(std::holds_alternative<Command>(*command));
    return std::get<Command>(*command);
}

QString refusal(const QStringList &arguments)
{
    const auto command = readCliArguments(arguments);
    EXPECT_FALSE(command);
    return command ? QString() : command.error().text;
}

TEST(CliArguments, downloadTakesSeveralAddressesAndItsOptionsInAnyOrder)
{
    const auto download = read<CliDownload>(
        {QStringLiteral("download"), QStringLiteral("http://a/"), QStringLiteral("--folder"),
         QStringLiteral("out"), QStringLiteral("http://b/"), QStringLiteral("--quality=3"),
         QStringLiteral("--mode"), QStringLiteral("flash"), QStringLiteral("--json")});

    EXPECT_EQ(download.addresses,
              QStringList({QStringLiteral("http://a/"), QStringLiteral("http://b/")}));
    EXPECT_EQ(download.folder, QStringLiteral("out"));
    EXPECT_EQ(download.quality, 3);
    EXPECT_EQ(download.mode, CliMode::Flash);
    EXPECT_EQ(download.output, CliOutput::Json);
}

TEST(CliArguments, convertTakesOneFileAndAProfile)
{
    const auto convert = read<CliConvert>({QStringLiteral("convert"), QStringLiteral("a.mp4"),
                                           QStringLiteral("--profile"), QStringLiteral("MP3"),
                                           QStringLiteral("--json")});
    EXPECT_EQ(convert.file, QStringLiteral("a.mp4"));
    EXPECT_EQ(convert.profile, QStringLiteral("MP3"));
    EXPECT_EQ(convert.output, CliOutput::Json);
    EXPECT_EQ(refusal({QStringLiteral("convert"), QStringLiteral("a.mp4")}),
              QStringLiteral("convert needs --profile; profiles shows the names"));
    EXPECT_EQ(
        refusal({QStringLiteral("convert"), QStringLiteral("--profile"), QStringLiteral("MP3")}),
        QStringLiteral("convert needs one file"));
}

TEST(CliArguments, aNameGoesWithOneAddressOnly)
{
    EXPECT_EQ(read<CliDownload>({QStringLiteral("download"), QStringLiteral("http://a/"),
                                 QStringLiteral("--name"), QStringLiteral("N")})
                  .name,
              QStringLiteral("N"));
    EXPECT_EQ(refusal({QStringLiteral("download"), QStringLiteral("http://a/"),
                       QStringLiteral("http://b/"), QStringLiteral("--name"), QStringLiteral("N")}),
              QStringLiteral("--name goes with one address, not with 2"));
}

TEST(CliArguments, twoDashesEndTheOptions)
{
    const auto download = read<CliDownload>(
        {QStringLiteral("download"), QStringLiteral("--"), QStringLiteral("--json")});

    EXPECT_EQ(download.addresses, QStringList(QStringLiteral("--json")));
    EXPECT_EQ(download.output, CliOutput::Text);
}

TEST(CliArguments, removeTakesRowIds)
{
    const auto remove = read<CliRemove>({QStringLiteral("remove"), QStringLiteral("3"),
                                         QStringLiteral("70000"), QStringLiteral("--delete-file")});

    EXPECT_EQ(remove.rows, (std::vector<std::int64_t>{3, 70000}));
    EXPECT_TRUE(remove.deleteFiles);
}

TEST(CliArguments, theOtherCommandsAreRead)
{
    EXPECT_EQ(read<CliRun>({QStringLiteral("run")}).output, CliOutput::Text);
    EXPECT_EQ(read<CliList>({QStringLiteral("list"), QStringLiteral("--json")}).output,
              CliOutput::Json);
    EXPECT_EQ(read<CliProbe>({QStringLiteral("probe"), QStringLiteral("http://a/")}).address,
              QStringLiteral("http://a/"));
    EXPECT_EQ(read<CliProfiles>({QStringLiteral("profiles"), QStringLiteral("--json")}).output,
              CliOutput::Json);
    read<CliVersion>({QStringLiteral("--version")});
    read<CliHelp>({QStringLiteral("--help")});
    read<CliHelp>({QStringLiteral("download"), QStringLiteral("--help")});
}

struct Refused {
    const char *name;
    QStringList arguments;
    QString reason;
};

void PrintTo(const Refused &refused, std::ostream *out)
{
    *out << refused.name;
}

class CliArgumentsRefused : public ::testing::TestWithParam<Refused> {};

TEST_P(CliArgumentsRefused, withOneSentenceThatNamesTheFault)
{
    EXPECT_EQ(refusal(GetParam().arguments), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CliArgumentsRefused,
    ::testing::Values(
        Refused{"nothing", {}, QStringLiteral("no command given")},
        Refused{
            "unknownCommand", {QStringLiteral("fly")}, QStringLiteral("unknown command \"fly\"")},
        Refused{
            "noAddress", {QStringLiteral("download")}, QStringLiteral("download needs an address")},
        Refused{"unknownOption",
                {QStringLiteral("download"), QStringLiteral("--fast"), QStringLiteral("http://a/")},
                QStringLiteral("unknown option --fast")},
        Refused{
            "missingValue",
            {QStringLiteral("download"), QStringLiteral("http://a/"), QStringLiteral("--folder")},
            QStringLiteral("--folder needs a value")},
        Refused{
            "emptyValue",
            {QStringLiteral("download"), QStringLiteral("http://a/"), QStringLiteral("--name=")},
            QStringLiteral("--name is empty")},
        Refused{"valueForASwitch",
                {QStringLiteral("list"), QStringLiteral("--json=yes")},
                QStringLiteral("--json takes no value")},
        Refused{"operandOfProfiles",
                {QStringLiteral("profiles"), QStringLiteral("mp3")},
                QStringLiteral("profiles takes no arguments")},
        Refused{"unknownMode",
                {QStringLiteral("download"), QStringLiteral("http://a/"), QStringLiteral("--mode"),
                 QStringLiteral("fast")},
                QStringLiteral("--mode is video, flash or direct, not \"fast\"")},
        Refused{"qualityTooHigh",
                {QStringLiteral("download"), QStringLiteral("http://a/"),
                 QStringLiteral("--quality"), QStringLiteral("7")},
                QStringLiteral("--quality is a number from 0 to 6, not \"7\"")},
        Refused{"noId",
                {QStringLiteral("remove")},
                QStringLiteral("remove needs the id of a task, as list shows it")},
        Refused{"idOfLetters",
                {QStringLiteral("remove"), QStringLiteral("x")},
                QStringLiteral("\"x\" is not the id of a task")},
        Refused{"idZero",
                {QStringLiteral("remove"), QStringLiteral("0")},
                QStringLiteral("\"0\" is not the id of a task")},
        Refused{"runWithAddress",
                {QStringLiteral("run"), QStringLiteral("http://a/")},
                QStringLiteral("run takes no arguments")},
        Refused{"probeOfTwo",
                {QStringLiteral("probe"), QStringLiteral("http://a/"), QStringLiteral("http://b/")},
                QStringLiteral("probe needs one address")}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace tollivar::app
