#include "companions/pageprobe/extractor_finder.h"

#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/find_program.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace tollivar::probe {

using capture::MediaFound;
using platform::ErrorKind;
using platform::failure;

namespace {

constexpr QLatin1StringView kProgram("yt-dlp");
constexpr std::chrono::seconds kAnswerLimit{20};
constexpr std::chrono::milliseconds kReadPause{20};
constexpr qsizetype kMaximumAnswer = 32 * 1024 * 1024;
constexpr std::size_t kReadSize = 64UL * 1024;

QString commandLine(const QString &program, const QString &address)
{
    return platform::joinCommandLine({
        program,
        QStringLiteral("--ignore-config"),
        QStringLiteral("--no-warnings"),
        QStringLiteral("--no-playlist"),
        QStringLiteral("--quiet"),
        QStringLiteral("--use-extractors"),
        QStringLiteral("all,-generic"),
        QStringLiteral("--format"),
        QStringLiteral("best[protocol^=http]"),
        QStringLiteral("--dump-single-json"),
        QStringLiteral("--"),
        address,
    });
}

QString headerOf(const QJsonObject &medium, QStringView name)
{
    return medium[u"http_headers"].toObject()[name].toString();
}

} // namespace

std::vector<MediaFound> readExtractorAnswer(const QByteArray &json, const QString &address)
{
    // Warnings may stand before the one line that is the answer.
    const QJsonObject medium =
        QJsonDocument::fromJson(json.mid(std::max<qsizetype>(json.indexOf("{\""), 0))).object();
    const QString media = medium[u"url"].toString();
    const bool isFetched = media.startsWith(u"http://") || media.startsWith(u"https://");
    const QString ending = medium[u"ext"].toString();
    if (!isFetched || medium[u"extractor_key"].toString() == u"Generic" || ending.isEmpty()) {
        return {};
    }
    const double size = medium[u"filesize"].toDouble(-1);
    const QString referer = headerOf(medium, u"Referer");
    return {{.address = media,
             .title = medium[u"title"].toString(),
             .mediaType = {},
             .extension = QLatin1Char('.') + ending,
             .length = size >= 0 && size < 9e15 ? std::optional(static_cast<std::int64_t>(size))
                                                : std::nullopt,
             .cookies = headerOf(medium, u"Cookie"),
             .agent = headerOf(medium, u"User-Agent"),
             .referer = referer.isEmpty() ? address : referer}};
}

platform::Result<std::vector<MediaFound>> ExtractorFinder::find(const capture::FindRequest &request,
                                                                platform::AutoResetEvent &stop)
{
    const auto program = platform::findProgram(kProgram);
    if (!program) {
        return failure(ErrorKind::TryAgain, QStringLiteral("%1 is not installed").arg(kProgram));
    }
    auto child = platform::ChildProcess::start(commandLine(*program, request.address));
    if (!child) {
        return tl::unexpected(child.error());
    }
    const auto deadline =
        std::min(request.deadline, std::chrono::steady_clock::now() + kAnswerLimit);
    QByteArray answer;
    std::array<std::byte, kReadSize> buffer;
    for (bool hasEnded = false; !hasEnded;) {
        hasEnded = (*child)->hasEnded();
        while (const std::size_t count = (*child)->read(buffer)) {
            answer.append(reinterpret_cast<const char *>(buffer.data()),
                          static_cast<qsizetype>(count));
            if (answer.size() > kMaximumAnswer) {
                return std::vector<MediaFound>{};
            }
        }
        if (!hasEnded && std::chrono::steady_clock::now() > deadline) {
            return std::vector<MediaFound>{};
        }
        if (!hasEnded && stop.wait(kReadPause)) {
            stop.set(); // The request to stop is the caller's to take back.
            return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
        }
    }
    return readExtractorAnswer(answer, request.address);
}

} // namespace tollivar::probe
