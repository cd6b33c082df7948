#include "ui/main_window/task_details.h"

#include "platform/build_config.h"

#include <QStringList>
#include <QSysInfo>
#include <QUrl>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

QString withoutPassword(const QString &address)
{
    const QUrl url(address);
    const bool isReadable = url.isValid() || !address.contains(u'@');
    if (!isReadable) {
        return u"(withheld)"_s;
    }
    return url.userInfo().isEmpty() ? address : url.toString(QUrl::RemoveUserInfo);
}

/// "a=(withheld); b=(withheld)".
QString cookieNames(const QString &cookies)
{
    QStringList names;
    const auto pairs = cookies.split(u';', Qt::SkipEmptyParts);
    for (const QString &pair : pairs) {
        names.append(pair.section(u'=', 0, 0).trimmed() + u"=(withheld)"_s);
    }
    return names.join(u"; "_s);
}

} // namespace

QString taskDetails(const RowSource &source, const TextLookup &texts, const QDateTime &now)
{
    const tasks::TaskInfo &task = source.record;
    const RowText row = rowText(source, texts);
    QStringList lines;
    const auto add = [&lines](const QString &name, const QString &value) {
        if (!value.isEmpty()) {
            // A value from outside makes no line of its own.
            lines.append(name + u": "_s + value.simplified());
        }
    };
    add(u"Program"_s, platform::build::kProductName + u' ' + platform::build::kVersion +
                          u", Qt "_s + QString::fromLatin1(qVersion()) + u", "_s +
                          QSysInfo::prettyProductName());
    add(u"Time"_s, now.toString(Qt::ISODate));
    add(u"Address"_s, withoutPassword(task.strOriURL));
    add(u"Media address"_s, withoutPassword(task.strDownloadUrl));
    add(u"Mode"_s, row.mode);
    add(u"Status"_s, row.status);
    add(u"Reason"_s, row.detail);
    add(u"Retries"_s, QString::number(source.retryCount));
    add(u"Downloaded"_s,
        u"%1 of %2 bytes"_s.arg(task.dwDownloadSize)
            .arg(task.dwSize == tasks::kUnknownSize ? u"unknown"_s : QString::number(task.dwSize)));
    add(u"File type"_s, task.strFileType);
    add(u"Agent"_s, task.strAgent);
    add(u"Referer"_s, withoutPassword(task.strReferer));
    add(u"Cookies"_s, cookieNames(task.strCookies));
    return lines.join(u'\n') + u'\n';
}

} // namespace tollivar::ui
