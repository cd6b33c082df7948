#include "companions/pageprobe/extractor_finder.h"

#include "companions/capture/profile_folder.h"
#include "companions/pageprobe/extractor_answer.h"
#include "platform/find_program.h"
#include "platform/guarded_child.h"

namespace tollivar::probe {

using capture::MediaFound;
using platform::ErrorKind;
using platform::failure;
using platform::GuardedChild;
using platform::Result;

namespace {

constexpr QLatin1StringView kProgram("yt-dlp");
constexpr std::chrono::seconds kAnswerLimit{20};
constexpr std::chrono::milliseconds kReadStep{20};
constexpr qsizetype kMaximumAnswer = 32LL * 1024 * 1024;

Result<std::unique_ptr<GuardedChild>> startExtractor(const QString &address)
{
    const auto program = platform::findProgram(kProgram);
    if (!program) {
        return failure(ErrorKind::TryAgain, QStringLiteral("%1 is not installed").arg(kProgram));
    }
    const auto folder = capture::newProfilePath();
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    // Its home stays the person's: it may be installed there.
    auto child = GuardedChild::start({.program = *program,
                                      .arguments = extractorArguments(address),
                                      .environment = {QStringLiteral("TMPDIR=") + *folder,
                                                      QStringLiteral("XDG_CACHE_HOME=") + *folder},
                                      .folder = *folder,
                                      .pipes = platform::GuardedPipes::StandardStreams});
    if (child) {
        (*child)->closeInput();
    }
    return child;
}

} // namespace

Result<std::vector<MediaFound>> ExtractorFinder::find(const capture::FindRequest &request,
                                                      platform::AutoResetEvent &stop)
{
    const auto child = startExtractor(request.address);
    if (!child) {
        return tl::unexpected(child.error());
    }
    const auto deadline =
        std::min(request.deadline, std::chrono::steady_clock::now() + kAnswerLimit);
    QByteArray answer;
    while (!(*child)->isGone()) {
        answer += (*child)->read(kReadStep);
        if (answer.size() > kMaximumAnswer) {
            return failure(ErrorKind::TryAgain, QStringLiteral("%1 says too much").arg(kProgram));
        }
        if (std::chrono::steady_clock::now() > deadline) {
            return failure(ErrorKind::TryAgain, QStringLiteral("%1 takes too long").arg(kProgram));
        }
        if (stop.isSet()) {
            return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
        }
    }
    return readExtractorAnswer(answer, request.address);
}

} // namespace tollivar::probe
