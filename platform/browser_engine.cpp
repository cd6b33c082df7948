#include "platform/browser_engine.h"

#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/find_program.h"
#include "platform/text_encoding.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace tollivar::platform {

namespace {

/// A version takes one line; what a chatty browser says beyond this is not read.
constexpr qsizetype kMaximumAnswer = 4'096;
constexpr qsizetype kMaximumDigits = 6;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// What the child says until it is done, says too much or the time is over.
QByteArray answerOf(ChildProcess &child, std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    QByteArray answer;
    std::array<std::byte, 1'024> buffer{};
    while (answer.size() < kMaximumAnswer) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 || !child.waitForOutput(left)) {
            return {};
        }
        const std::size_t count = child.read(buffer);
        if (count == 0) {
            break;
        }
        answer += QByteArrayView(buffer.data(), static_cast<qsizetype>(count));
    }
    return answer;
}

} // namespace

std::optional<QString> findBrowser(BrowserUse use)
{
    if (const QString chosen = qEnvironmentVariable("TOLLIVAR_BROWSER"); !chosen.isEmpty()) {
        const QFileInfo file(chosen);
        return file.isFile() && file.isExecutable() ? std::optional(file.absoluteFilePath())
                                                    : std::nullopt;
    }
    for (const QString &place : browserPlaces(use)) {
        if (auto found = findProgram(place)) {
            return found;
        }
    }
    return std::nullopt;
}

int browserMajorVersion(const QString &browser, std::chrono::milliseconds limit)
{
    auto child = ChildProcess::start(joinCommandLine({browser, QStringLiteral("--version")}));
    if (!child) {
        qWarning("the browser's version is unknown: %s", qPrintable(child.error().text));
        return kUnknownBrowserVersion;
    }
    return majorVersionIn(decodeUtf8OrLatin1(answerOf(**child, limit)));
}

int majorVersionIn(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool beginsWord = i == 0 || text[i - 1].isSpace();
        if (!beginsWord || !isDigit(text[i])) {
            continue;
        }
        const auto end = std::find_if_not(text.begin() + i, text.end(), isDigit);
        const qsizetype digits = end - (text.begin() + i);
        if (end != text.end() && *end == u'.') {
            return digits <= kMaximumDigits ? text.mid(i, digits).toInt() : kUnknownBrowserVersion;
        }
    }
    return kUnknownBrowserVersion;
}

} // namespace tollivar::platform
