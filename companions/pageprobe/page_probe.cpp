#include "companions/pageprobe/page_probe.h"

#include "companions/capture/answer_writer.h"
#include "companions/capture/capture_engine.h"
#include "companions/capture/media_rank.h"
#include "companions/pageprobe/direct_finder.h"
#include "companions/pageprobe/extractor_finder.h"
#include "companions/pageprobe/static_finder.h"
#include "companions/pageprobe/time_limit.h"

#include <cstdio>

namespace tollivar::probe {

using capture::MediaFound;
using capture::MediaKind;

namespace {

/// Callers are promised an end within 45 s. The finders together get the first limit; what is under
/// way then is told to stop at the second, and the process ends at the third whatever hangs.
constexpr std::chrono::seconds kTimeToFind{36};
constexpr std::chrono::seconds kPatience{38};
constexpr std::chrono::seconds kLimit{43};

/// True when these are what the person came for, so that no other way has to be tried.
bool isWanted(const std::vector<MediaFound> &media, const capture::FindRequest &request)
{
    if (media.empty()) {
        return false;
    }
    const MediaFound &best = media.front();
    const MediaKind kind = capture::kindOf(best.mediaType, best.address);
    if (best.address == request.address) {
        return true; // Given directly: there is nothing else to find.
    }
    if (request.preference == capture::MediaPreference::Flash) {
        return kind == MediaKind::Flash;
    }
    // None: an address that does not say what it is, but was found as a medium.
    return kind == MediaKind::Video || kind == MediaKind::Flash || kind == MediaKind::None;
}

} // namespace

Finders makeFinders(ProbeMode mode)
{
    Finders finders;
    finders.push_back(std::make_unique<DirectFinder>());
    if (mode == ProbeMode::ReadingFirst) {
        finders.push_back(std::make_unique<StaticFinder>());
    }
    finders.push_back(std::make_unique<ExtractorFinder>());
    finders.push_back(std::make_unique<capture::CaptureEngine>());
    if (mode == ProbeMode::BrowserFirst) {
        finders.push_back(std::make_unique<StaticFinder>());
    }
    return finders;
}

std::vector<MediaFound> findMedia(const Finders &finders, const capture::FindRequest &request,
                                  platform::AutoResetEvent &stop)
{
    std::vector<MediaFound> secondBest;
    for (const auto &finder : finders) {
        auto media = finder->find(request, stop);
        if (!media) {
            qInfo("a way to look was passed over: %s", qPrintable(media.error().text));
        } else if (isWanted(*media, request)) {
            return *media;
        } else if (secondBest.empty()) {
            secondBest = std::move(*media);
        }
        if (stop.isSet() || std::chrono::steady_clock::now() > request.deadline) {
            break;
        }
    }
    return secondBest;
}

int runPageProbe(const QStringList &arguments)
{
    const auto read = readProbeArguments(arguments);
    if (!read) {
        qWarning("bad usage: %s", qPrintable(read.error().text));
        return 2;
    }
    platform::AutoResetEvent stop;
    const TimeLimit limit(stop, kPatience, kLimit);
    const capture::FindRequest request{.address = read->address,
                                       .preference = read->preference,
                                       .deadline = std::chrono::steady_clock::now() + kTimeToFind};
    const QByteArray answer =
        capture::writeAnswer(findMedia(makeFinders(read->mode), request, stop));
    std::fwrite(answer.constData(), 1, static_cast<std::size_t>(answer.size()), stdout);
    std::fflush(stdout);
    return answer.isEmpty() ? 1 : 0;
}

} // namespace tollivar::probe
