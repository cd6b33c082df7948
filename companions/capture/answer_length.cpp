#include "companions/capture/answer_length.h"

namespace tollivar::capture {

std::optional<std::int64_t> lengthOfAnswer(QStringView contentRange, QStringView contentLength)
{
    const qsizetype slash = contentRange.indexOf(u'/');
    const QStringView text = slash < 0 ? contentLength : contentRange.mid(slash + 1);
    bool isNumber = false;
    const qlonglong length = text.trimmed().toLongLong(&isNumber);
    return isNumber && length >= 0 ? std::optional<std::int64_t>(length) : std::nullopt;
}

} // namespace tollivar::capture
