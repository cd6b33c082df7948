#include "app/second_start.h"

#include "platform/command_line_text.h"
#include "platform/file_ops.h"
#include "platform/local_messages.h"

#include <QFileInfo>
#include <QtEndian>

namespace tollivar::app {

using platform::CopyDataId;
using platform::ErrorKind;
using platform::FileLock;

namespace {

constexpr std::chrono::milliseconds kHandOverLimit{3'000};
/// The program's name and one pair.
constexpr qsizetype kFewestArguments = 3;

platform::Result<std::unique_ptr<FileLock>> claimPlace(const platform::InstancePlace &place)
{
    // The first start of all may come before the data directory has been made.
    if (const auto made = platform::makeFolders(QFileInfo(place.lock).path()); !made) {
        return tl::unexpected(made.error());
    }
    return FileLock::take(place.lock);
}

void tellTheFirst(const platform::InstancePlace &place, const QStringList &arguments)
{
    const bool hasPair = arguments.size() >= kFewestArguments;
    const auto told = platform::sendLocalMessage(
        place.socket, hasPair ? CopyDataId::CommandLine : CopyDataId::BringToFront,
        hasPair ? commandLineMessage(arguments) : QByteArray(), kHandOverLimit);
    // Nobody listening is no news: the first is still starting, or already ending.
    if (!told && told.error().kind != ErrorKind::Hopeless) {
        qWarning("the running program was not told: %s", qPrintable(told.error().text));
    }
}

} // namespace

StartCheck checkSingleInstance(const platform::InstancePlace &place, const QStringList &arguments)
{
    auto claim = claimPlace(place);
    if (claim) {
        return {StartOutcome::GoOn, std::move(*claim)};
    }
    if (claim.error().kind == ErrorKind::TryAgain) {
        tellTheFirst(place, arguments);
        return {StartOutcome::End, nullptr};
    }
    qWarning("later starts will not find this one: %s", qPrintable(claim.error().text));
    return {StartOutcome::GoOn, nullptr};
}

QByteArray commandLineMessage(const QStringList &arguments)
{
    QStringList words = arguments;
    if (!words.isEmpty()) {
        // The program's name knows no escape for a quote, which here would swallow the rest.
        words.front().remove(u'"');
    }
    const QString text = platform::joinCommandLine(words) + QChar(QChar::Null);
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    return bytes;
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
