#include "ui/main_window/captured_media.h"

#include "fetch/text/file_naming.h"
#include "platform/build_config.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace tollivar::ui {

namespace {

bool isBroadcasterPage(const QString &address)
{
    const QString lower = address.toLower();
    return std::any_of(std::begin(platform::build::kBroadcasterDomains),
                       std::end(platform::build::kBroadcasterDomains),
                       [&lower](QLatin1StringView domain) { return lower.contains(domain); });
}

QString withoutNumber(const QString &title)
{
    static const QRegularExpression number(QStringLiteral("^[0-9]+-"));
    QString rest = title;
    rest.remove(number);
    rest = rest.trimmed();
    return rest.isEmpty() ? title : rest;
}

} // namespace

QString folderOfCaptured(const QString &folder, const QString &title, const QString &pageAddress)
{
    const QString name = isBroadcasterPage(pageAddress) ? withoutNumber(title) : title;
    const QString parent = folder.endsWith(u'/') ? folder : folder + u'/';
    return parent + fetch::cleanName(name, u'-') + u'/';
}

} // namespace tollivar::ui
