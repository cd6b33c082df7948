#include "update/version.h"

#include "platform/ini_file.h"

#include <array>

namespace tollivar::update {

namespace {

constexpr qsizetype kParts = 4;

std::array<int, kParts> partsOf(QStringView version)
{
    std::array<int, kParts> parts{};
    for (qsizetype i = 0; i < kParts; ++i) {
        // The last part is all that is left.
        const qsizetype dot = i + 1 < kParts ? version.indexOf(u'.') : -1;
        parts[static_cast<std::size_t>(i)] =
            platform::iniNumber(dot < 0 ? version : version.left(dot));
        version = dot < 0 ? QStringView() : version.mid(dot + 1);
    }
    return parts;
}

} // namespace

int compareVersions(QStringView left, QStringView right)
{
    const auto leftParts = partsOf(left);
    const auto rightParts = partsOf(right);
    for (std::size_t i = 0; i < leftParts.size(); ++i) {
        if (leftParts[i] != rightParts[i]) {
            return leftParts[i] < rightParts[i] ? -1 : 1;
        }
    }
    return 0;
}

} // namespace tollivar::update
