#pragma once

#include <vector>

namespace tollivar::DuiLib {

class SkinSource;

/// Gives the application the skin's style sheet "skin.qss" over one light base look, the same on
/// every desktop. A style sheet that is missing, broken or names files outside the skin is told as
/// a problem, and the next source's is taken.
void applyLook(const std::vector<SkinSource> &sources);

} // namespace tollivar::DuiLib
