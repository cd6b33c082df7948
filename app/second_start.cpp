#include "app/second_start.h"

#include "platform/command_line_text.h"
#include "platform/paths.h"

#include <QtEndian>

namespace tollivar::app {

using platform::CopyDataId;

namespace {

const QString kInstanceName = QStringLiteral("Tollivar-5B0C1E27-93D4-4c8a-B1F6-2E7D90A4C315");
constexpr std::chrono::milliseconds kHandOverLimit{3'000};
/// The program's name and one pair.
constexpr qsizetype kFewestArguments = 3;

/// UTF-16 text with its terminating zero, least significant byte first.
QByteArray commandLineMessage(const QStringList &arguments)
{
    const QString text = platform::joinCommandLine(arguments) + QChar(QChar::Null);
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

} // namespace

InstancePlace instancePlace(const QString &dataDirectory)
{
    const QString runtime = platform::runtimeFolder();
    const QString base =
        (runtime.isEmpty() ? dataDirectory : runtime) + QLatin1Char('/') + kInstanceName;
    return {base + QStringLiteral(".lock"), base + QStringLiteral(".socket")};
}

std::unique_ptr<platform::FileLock> becomeFirst(const InstancePlace &place,
                                                const QStringList &arguments)
{
    if (auto lock = platform::FileLock::take(place.lock)) {
        return std::move(*lock);
    }
    const bool hasPair = arguments.size() >= kFewestArguments;
    const auto told = platform::sendLocalMessage(
        place.socket, hasPair ? CopyDataId::CommandLine : CopyDataId::BringToFront,
        hasPair ? commandLineMessage(arguments) : QByteArray(), kHandOverLimit);
    if (!told) {
        qInfo("the running program was not told: %s", qPrintable(told.error().text));
    }
    return nullptr;
}

std::optional<QStringList> readCommandLineMessage(const QByteArray &payload)
{
    if (payload.size() % 2 != 0) {
        return std::nullopt;
    }
    QString text(payload.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(payload.data(), text.size(), text.data());
    const qsizetype end = text.indexOf(QChar::Null);
    if (end < 0) {
        return std::nullopt;
    }
    return platform::splitCommandLine(text.left(end));
}

} // namespace tollivar::app
