#include "tests/support/notification_service.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;

namespace {

const QString kConnection = u"notification service"_s;
const QString kName = u"org.freedesktop.Notifications"_s;

} // namespace

NotificationService::NotificationService(const SessionBus &bus)
{
    auto connection = QDBusConnection::connectToBus(bus.address(), kConnection);
    EXPECT_TRUE(connection.registerVirtualObject(u"/org/freedesktop/Notifications"_s, this));
    EXPECT_TRUE(connection.registerService(kName));
}

NotificationService::~NotificationService()
{
    QDBusConnection::disconnectFromBus(kConnection);
}

QString NotificationService::introspect(const QString & /*path*/) const
{
    return {};
}

bool NotificationService::handleMessage(const QDBusMessage &message,
                                        const QDBusConnection &connection)
{
    const QList<QVariant> wanted{kName, u"Inhibited"_s};
    if (message.member() != "Get"_L1 || message.arguments() != wanted) {
        return false;
    }
    ++m_questions;
    switch (m_answer) {
    case Answer::No:
    case Answer::Yes:
        return connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(m_answer == Answer::Yes))));
    case Answer::NoSuchProperty:
        return connection.send(message.createErrorReply(QDBusError::InvalidArgs, u"no"_s));
    case Answer::Text:
        return connection.send(message.createReply(u"true"_s));
    case Answer::Silence:
        return true;
    }
    return false;
}

} // namespace tollivar::test
