#pragma once

#include "ui/skin/skin_problem.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <vector>

namespace tollivar::DuiLib {

struct SkinAttribute {
    QString name;
    QString value;
};

/// One element of a skin file with what it holds, in written order.
struct SkinElement {
    QString type;
    std::vector<SkinAttribute> attributes;
    std::vector<SkinElement> children;
    int line = 0;

    /// Empty when it is not there.
    [[nodiscard]] QString attribute(QStringView name) const;
};

/// The limits of a skin file; no window comes near them.
inline constexpr qsizetype kMaximumSkinFile = qsizetype{1024} * 1024; ///< bytes
inline constexpr int kMaximumSkinDepth = 32;
inline constexpr int kMaximumSkinElements = 2'000;

/// Reads one skin file, whatever it holds.
/// Errors: the first thing that is wrong with its form: broken XML, another root than Window, too
///         large, too deep, too many elements.
[[nodiscard]] tl::expected<SkinElement, SkinProblem> readSkinDocument(const QByteArray &xml,
                                                                      const QString &fileName);

} // namespace tollivar::DuiLib
