#pragma once

#include "convert/conversion_profile.h"
#include "tasks/api/conversion_options.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <set>
#include <span>
#include <vector>

namespace tollivar::convert {

/// The eight sets of choices, in the order of ProfileOption.
using ChoiceSets = std::array<std::set<QString>, kProfileOptionCount>;

/// Every conversion profile by its name.
///
/// Threads: any, each with its own table.
class ProfileTable {
public:
    /// Reads profiles from lines; of several with one name the first counts, and a line that says
    /// nothing known is passed over.
    [[nodiscard]] static ProfileTable BuildProfiles(std::span<const QStringView> lines);
    /// The profiles of the program.
    [[nodiscard]] static ProfileTable BuildProfiles();

    /// False, and nothing copied, for an unknown name.
    [[nodiscard]] bool GetProfile(const QString &name, ConversionProfile &profile) const;

    /// Sets the texts of `options` to the profile's defaults; an option without values keeps its
    /// own. False, and nothing changed, for an unknown name.
    [[nodiscard]] bool ApplyProfileDefaults(const QString &name,
                                            tasks::ConversionOptions &options) const;

    /// What every named profile offers; unknown names are skipped.
    [[nodiscard]] ChoiceSets CommonChoices(const QStringList &names) const;

    /// The names that a person can mean by `text`: the one that it is, else those that begin with
    /// it, whatever the case.
    [[nodiscard]] QStringList namesMeantBy(const QString &text) const;

    /// In written order.
    [[nodiscard]] QStringList names() const;

    /// The profile that is selected at first: no conversion.
    [[nodiscard]] static QString defaultName();

private:
    std::vector<ConversionProfile> m_profiles;
};

/// The field of the options that holds the value of an option.
[[nodiscard]] QString tasks::ConversionOptions::*fieldOf(ProfileOption option);

/// Choices in the order a person expects: "Auto" first, then sizes and rates by number, then words.
[[nodiscard]] QStringList orderedForScreen(const std::set<QString> &choices);

} // namespace tollivar::convert
