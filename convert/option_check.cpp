#include "convert/option_check.h"

#include "convert/profile_table.h"

#include <QRegularExpression>

namespace tollivar::convert {

namespace {

/// A number, a size, a rate or a codec's name: one word that is no option.
bool isOneWord(const QString &value)
{
    static const QRegularExpression word(QStringLiteral("\\A[A-Za-z0-9_.][A-Za-z0-9_.-]*\\z"));
    return value.isEmpty() || word.match(value).hasMatch();
}

} // namespace

bool areOfAProfile(const tasks::ConversionOptions &options)
{
    for (std::size_t option = 0; option < kProfileOptionCount; ++option) {
        if (!isOneWord(options.*fieldOf(static_cast<ProfileOption>(option)))) {
            return false;
        }
    }
    const auto table = ProfileTable::BuildProfiles();
    const QStringList names = table.names();
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        ConversionProfile profile;
        return table.GetProfile(name, profile) && profile.m_csType == options.m_csType &&
               profile.m_csConvParam == options.m_csConvParam;
    });
}

} // namespace tollivar::convert
