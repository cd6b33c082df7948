#include "companions/pageprobe/media_ending.h"

#include "companions/capture/media_rank.h"
#include "fetch/text/media_type.h"

#include <QFileInfo>
#include <QUrl>

namespace tollivar::probe {

QString endingOfMedium(const QString &mediaType, const QString &address)
{
    QString byType = fetch::typeForMedia(mediaType.toLatin1());
    if (!byType.isEmpty()) {
        return byType;
    }
    // The ending of a script that hands a medium out says nothing about it.
    const bool isTold = capture::kindOf(QString(), address) != capture::MediaKind::None;
    return isTold ? QLatin1Char('.') + QFileInfo(QUrl(address).path()).suffix().toLower()
                  : QString();
}

} // namespace tollivar::probe
