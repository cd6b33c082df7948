#include "platform/quiet_time.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

namespace {

/// A completed download is worth telling at once; a desktop that hangs must not hold it up.
constexpr int kLimitMs = 500;

Notices noticesOf(const QDBusPendingReply<QDBusVariant> &reply)
{
    // Most desktops have no such property, and some machines nobody who shows notices.
    if (reply.isError()) {
        return Notices::Welcome;
    }
    return reply.value().variant().toBool() ? Notices::Unwanted : Notices::Welcome;
}

} // namespace

void askForQuietTime(QObject *context, std::function<void(Notices)> answer)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QMetaObject::invokeMethod(
            context, [answer = std::move(answer)] { answer(Notices::Welcome); },
            Qt::QueuedConnection);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
        u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    // Who is not there has nothing switched off, and need not be started for the question.
    call.setAutoStartService(false);
    call << u"org.freedesktop.Notifications"_s << u"Inhibited"_s;
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kLimitMs), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [answer = std::move(answer)](QDBusPendingCallWatcher *finished) {
                         finished->deleteLater();
                         answer(noticesOf(*finished));
                     });
}

} // namespace tollivar::platform
