#include "platform/log.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>

#include <mutex>

namespace tollivar::platform {

namespace {

void writeNowhere(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                  const QString & /*text*/)
{
}

/// Opened for each line: several processes may share the file, and a log that grows is no
/// bottleneck of ours.
void writeToFile(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    QFile file(qEnvironmentVariable("TOLLIVAR_LOG_FILE"));
    if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        file.write((QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + QLatin1Char(' ') +
                    qFormatLogMessage(type, context, text) + QLatin1Char('\n'))
                       .toUtf8());
    }
}

bool installFileLog()
{
    if (const QString rules = qEnvironmentVariable("TOLLIVAR_LOG"); !rules.isEmpty()) {
        QLoggingCategory::setFilterRules(QString(rules).replace(u';', u'\n'));
    }
    const bool hasFile = qEnvironmentVariableIsSet("TOLLIVAR_LOG_FILE");
    if (hasFile) {
        qInstallMessageHandler(writeToFile);
    }
    return hasFile;
}

} // namespace

void setUpLog()
{
    installFileLog();
}

void logToFileOnly()
{
    if (!installFileLog()) {
        qInstallMessageHandler(writeNowhere);
    }
}

} // namespace tollivar::platform
