#include "app/cli/profiles_command.h"

#include "app/cli/exit_status.h"
#include "app/cli/standard_streams.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace tollivar::app {

using convert::ConversionProfile;
using convert::ProfileTable;

namespace {

/// Scripts read these: never rename. In the order of ProfileOption.
constexpr std::array<QLatin1StringView, convert::kProfileOptionCount> kListKeys = {
    QLatin1StringView("videoSize"),      QLatin1StringView("videoBitRate"),
    QLatin1StringView("videoFrameRate"), QLatin1StringView("videoCodec"),
    QLatin1StringView("audioBitRate"),   QLatin1StringView("audioSampleRate"),
    QLatin1StringView("audioChannel"),   QLatin1StringView("audioCodec")};

QJsonObject asJson(const ConversionProfile &profile)
{
    QJsonObject object{{QStringLiteral("name"), profile.m_csProfileName},
                       {QStringLiteral("type"), profile.m_csType},
                       {QStringLiteral("parameters"), profile.m_csConvParam}};
    for (std::size_t option = 0; option < convert::kProfileOptionCount; ++option) {
        QStringList values = profile.options[option].written;
        values.removeDuplicates();
        object.insert(kListKeys[option], QJsonArray::fromStringList(values));
    }
    return object;
}

} // namespace

QByteArray profilesJson(const ProfileTable &table)
{
    QJsonArray list;
    const QStringList names = table.names();
    for (const QString &name : names) {
        ConversionProfile profile;
        if (table.GetProfile(name, profile)) {
            list.append(asJson(profile));
        }
    }
    return QJsonDocument(list).toJson(QJsonDocument::Indented);
}

int runProfiles(const CliProfiles &profiles)
{
    const ProfileTable table = ProfileTable::BuildProfiles();
    writeOutput(profiles.output == CliOutput::Json ? profilesJson(table)
                                                   : (table.names().join(u'\n') + u'\n').toUtf8());
    return kAllCompleted;
}

} // namespace tollivar::app
