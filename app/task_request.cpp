#include "app/task_request.h"

#include "convert/profile_table.h"
#include "fetch/text/file_naming.h"
#include "fetch/text/site_url.h"
#include "platform/file_ops.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

namespace tollivar::app {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

constexpr qsizetype kMaximumAddressLength = 32'768;
constexpr int kMaximumRequests = 10'000;

/// What stands before "//", or before a colon that no port number follows; empty when nothing does.
QString schemeOf(const QString &address)
{
    static const QRegularExpression pattern(
        QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*):(?://|(?![0-9]))"));
    return pattern.match(address).captured(1).toLower();
}

/// The last part of the address's path, percent-decoded.
QString fileNameOf(const QString &address)
{
    const QString path = QUrl(address).path(QUrl::FullyDecoded);
    return path.mid(path.lastIndexOf(u'/') + 1);
}

void nameDirectFile(const TaskRequest &request, tasks::TaskInfo &task)
{
    const QString fileName = fileNameOf(task.strOriURL);
    const qsizetype dot = fileName.lastIndexOf(u'.');
    const bool hasType = dot > 0 && dot + 1 < fileName.size();
    task.strFileType = hasType ? fetch::harmlessFileType(fileName.mid(dot)) : QString();
    task.strDownloadUrl = task.strOriURL;
    task.bAutoRename = 0;
    if (request.name.isEmpty()) {
        task.strOutputName = fetch::cleanName(hasType ? fileName.left(dot) : fileName, u' ');
    }
}

/// A stream is its own media, and always comes as flash video, whatever it is called.
void nameStream(const TaskRequest &request, tasks::TaskInfo &task)
{
    nameDirectFile(request, task);
    task.nModeLow = static_cast<int>(tasks::DownloadMethod::Direct);
    task.nProtocol = tasks::kProtocolRtmp;
    task.strFileType = QStringLiteral(".flv");
}

void namePage(const TaskRequest &request, tasks::TaskInfo &task)
{
    if (request.method == tasks::DownloadMethod::Flash) {
        task.strFileType = QStringLiteral(".swf");
    }
    if (request.name.isEmpty()) {
        task.bAutoRename = 1;
        task.strOutputName = fetch::cleanName(fetch::nameBeforeTitle(task.strOriURL), u'-');
    }
}

} // namespace

Result<QString> checkedAddress(const QString &address)
{
    const QString trimmed = address.trimmed();
    if (trimmed.isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("the address is empty"));
    }
    if (trimmed.size() > kMaximumAddressLength) {
        return failure(ErrorKind::AskUser, QStringLiteral("the address is too long"));
    }
    const QString scheme = schemeOf(trimmed);
    const bool isFetched =
        scheme == u"http" || scheme == u"https" || fetch::isStreamAddress(trimmed);
    if (!scheme.isEmpty() && !isFetched) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("addresses of the kind \"%1:\" are not fetched; give one "
                                      "that begins with http://, https:// or rtmp://")
                           .arg(scheme));
    }
    const QString complete = fetch::ensureScheme(trimmed);
    if (QUrl(complete).host().isEmpty()) {
        return failure(ErrorKind::AskUser, QStringLiteral("\"%1\" is not an address").arg(trimmed));
    }
    return complete;
}

Result<tasks::TaskInfo> newTask(const TaskRequest &request)
{
    const auto address = checkedAddress(request.address);
    if (!address) {
        return tl::unexpected(address.error());
    }
    tasks::TaskInfo task;
    task.strOriURL = *address;
    task.nModeLow = static_cast<int>(request.method);
    task.nModeHigh = request.quality;
    if (!request.profile.isEmpty() && !convert::ProfileTable::BuildProfiles().ApplyProfileDefaults(
                                          request.profile, task.m_ConvOpts)) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("there is no profile \"%1\"").arg(request.profile));
    }
    if (!request.name.isEmpty()) {
        task.bAutoRename = 0;
        QString name = fetch::withoutForbiddenCharacters(request.name.trimmed(), u'-');
        name.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
        task.strOutputName = name;
    }
    if (fetch::isStreamAddress(task.strOriURL)) {
        nameStream(request, task);
    } else if (request.method == tasks::DownloadMethod::Direct) {
        nameDirectFile(request, task);
    } else {
        namePage(request, task);
    }
    if (const auto made = platform::makeFolders(request.folder); !made) {
        return tl::unexpected(
            made.error().during(QStringLiteral("use the folder \"%1\"").arg(request.folder)));
    }
    task.strOutputFolder =
        request.folder.endsWith(u'/') ? request.folder : request.folder + QLatin1Char('/');
    return task;
}

QByteArray encodeTaskRequests(const std::vector<TaskRequest> &requests)
{
    QJsonArray list;
    for (const TaskRequest &request : requests) {
        list.append(QJsonObject{
            {QStringLiteral("address"), request.address},
            {QStringLiteral("folder"), request.folder},
            {QStringLiteral("name"), request.name},
            {QStringLiteral("method"), static_cast<int>(request.method)},
            {QStringLiteral("quality"), request.quality},
            {QStringLiteral("profile"), request.profile},
        });
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

Result<std::vector<TaskRequest>> decodeTaskRequests(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isArray() || document.array().size() > kMaximumRequests) {
        return failure(ErrorKind::AskUser, QStringLiteral("not a list of requests"));
    }
    std::vector<TaskRequest> requests;
    for (const auto &value : document.array()) {
        const QJsonObject object = value.toObject();
        const int method = object[QStringLiteral("method")].toInt(-1);
        const int quality = object[QStringLiteral("quality")].toInt(-1);
        const bool isKnownMethod = method == static_cast<int>(tasks::DownloadMethod::Video) ||
                                   method == static_cast<int>(tasks::DownloadMethod::Flash) ||
                                   method == static_cast<int>(tasks::DownloadMethod::Direct);
        if (!isKnownMethod || quality < 0 || quality > 6) {
            return failure(ErrorKind::AskUser, QStringLiteral("a request has an unknown mode"));
        }
        requests.push_back({.address = object[QStringLiteral("address")].toString(),
                            .folder = object[QStringLiteral("folder")].toString(),
                            .name = object[QStringLiteral("name")].toString(),
                            .method = static_cast<tasks::DownloadMethod>(method),
                            .quality = quality,
                            .profile = object[QStringLiteral("profile")].toString()});
    }
    return requests;
}

} // namespace tollivar::app
