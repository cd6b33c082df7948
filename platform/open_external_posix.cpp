#include "platform/find_program.h"
#include "platform/open_external.h"
#include "platform/web_address.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

namespace {

bool openWithDesktop(const QString &target)
{
    const auto opener = findProgram(u"xdg-open"_s);
    return opener && QProcess::startDetached(*opener, {target});
}

} // namespace

bool openAddress(const QString &address)
{
    // The encoded form is one word that begins with its scheme: nobody can read it as an option.
    return isWebAddress(address) && openWithDesktop(QString::fromLatin1(QUrl(address).toEncoded()));
}

bool openPath(const QString &path)
{
    return QDir::isAbsolutePath(path) && QFileInfo::exists(path) && openWithDesktop(path);
}

bool revealFile(const QString &path)
{
    const QString folder = QFileInfo(path).path();
    if (!QDir::isAbsolutePath(path) || !QFileInfo::exists(path)) {
        return openPath(folder);
    }
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return openPath(folder);
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())} << QString();
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [folder](QDBusPendingCallWatcher *finished) {
                         if (finished->isError()) {
                             openPath(folder);
                         }
                         finished->deleteLater();
                     });
    return true;
}

bool startCompanion(const QString &name, const QStringList &arguments)
{
    const auto program = findProgram(name);
    return program && QProcess::startDetached(*program, arguments);
}

} // namespace tollivar::platform
