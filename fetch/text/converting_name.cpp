#include "fetch/text/converting_name.h"

namespace tollivar::fetch {

QString convertingPath(const QString &outputPath)
{
    const qsizetype folder = outputPath.lastIndexOf(u'/') + 1;
    return outputPath.left(folder) + QStringLiteral(".converting-") + outputPath.mid(folder);
}

} // namespace tollivar::fetch
