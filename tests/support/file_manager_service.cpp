#include "tests/support/file_manager_service.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;

namespace {

const QString kConnection = u"file manager"_s;

} // namespace

FileManagerService::FileManagerService(const SessionBus &bus)
{
    auto connection = QDBusConnection::connectToBus(bus.address(), kConnection);
    EXPECT_TRUE(connection.registerVirtualObject(u"/org/freedesktop/FileManager1"_s, this));
    EXPECT_TRUE(connection.registerService(u"org.freedesktop.FileManager1"_s));
}

FileManagerService::~FileManagerService()
{
    QDBusConnection::disconnectFromBus(kConnection);
}

QString FileManagerService::introspect(const QString & /*path*/) const
{
    return {};
}

bool FileManagerService::handleMessage(const QDBusMessage &message,
                                       const QDBusConnection &connection)
{
    if (message.interface() != "org.freedesktop.FileManager1"_L1 ||
        message.member() != "ShowItems"_L1 || message.signature() != "ass"_L1) {
        return false;
    }
    m_asked += message.arguments().at(0).toStringList();
    return connection.send(m_answer == Answer::Shows
                               ? message.createReply()
                               : message.createErrorReply(QDBusError::Failed, u"no"_s));
}

} // namespace tollivar::test
