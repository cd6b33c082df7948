#include "ui/skin/internal/attribute_values.h"

#include <array>

namespace tollivar::DuiLib::internal {

namespace {

constexpr int kLargestNumber = 10'000;

template<std::size_t count>
std::optional<std::array<int, count>> numbers(QStringView text)
{
    const auto pieces = text.split(u',');
    if (pieces.size() != static_cast<qsizetype>(count)) {
        return std::nullopt;
    }
    std::array<int, count> values{};
    for (std::size_t i = 0; i < count; ++i) {
        const auto value = number(pieces[static_cast<qsizetype>(i)]);
        if (!value) {
            return std::nullopt;
        }
        values[i] = *value;
    }
    return values;
}

} // namespace

std::optional<int> number(QStringView text)
{
    bool isNumber = false;
    const int value = text.trimmed().toInt(&isNumber);
    if (!isNumber || value < 0 || value > kLargestNumber) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> flag(QStringView text)
{
    if (text == u"true") {
        return true;
    }
    if (text == u"false") {
        return false;
    }
    return std::nullopt;
}

std::optional<QSize> size(QStringView text)
{
    const auto values = numbers<2>(text);
    return values ? std::optional(QSize((*values)[0], (*values)[1])) : std::nullopt;
}

std::optional<QMargins> margins(QStringView text)
{
    const auto values = numbers<4>(text);
    return values ? std::optional(QMargins((*values)[0], (*values)[1], (*values)[2], (*values)[3]))
                  : std::nullopt;
}

std::optional<Qt::Alignment> alignment(QStringView text)
{
    if (text == u"left") {
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
    if (text == u"right") {
        return Qt::AlignRight | Qt::AlignVCenter;
    }
    if (text == u"center") {
        return Qt::Alignment(Qt::AlignCenter);
    }
    if (text == u"top") {
        return Qt::AlignLeft | Qt::AlignTop;
    }
    return std::nullopt;
}

} // namespace tollivar::DuiLib::internal
