#include "companions/pageprobe/page_probe.h"

#include "companions/capture/capture_engine.h"
#include "companions/pageprobe/answer_writer.h"
#include "companions/pageprobe/direct_finder.h"
#include "companions/pageprobe/extractor_finder.h"
#include "companions/pageprobe/static_finder.h"

#include <cstdio>

namespace tollivar::probe {

namespace {

/// All strategies together; what is under way then ends on its own limits within the 45 s that
/// callers are promised.
constexpr std::chrono::seconds kTimeToFind{36};

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

std::vector<capture::MediaFound> findMedia(const Finders &finders, const ProbeArguments &arguments,
                                           platform::AutoResetEvent &stop)
{
    const capture::FindRequest request{.address = arguments.address,
                                       .preference = arguments.prefersFlash
                                                         ? capture::MediaPreference::Flash
                                                         : capture::MediaPreference::Video,
                                       .deadline = std::chrono::steady_clock::now() + kTimeToFind};
    for (const auto &finder : finders) {
        const auto media = finder->find(request, stop);
        if (media && !media->empty()) {
            return *media;
        }
        if (!media) {
            qInfo("a way to look was passed over: %s", qPrintable(media.error().text));
        }
        if (stop.isSet() || std::chrono::steady_clock::now() > request.deadline) {
            break;
        }
    }
    return {};
}

int runPageProbe(const QStringList &arguments)
{
    const auto read = readProbeArguments(arguments);
    if (!read) {
        qWarning("bad usage: %s", qPrintable(read.error().text));
        return 2;
    }
    platform::AutoResetEvent stop;
    const QByteArray answer = writeAnswer(findMedia(makeFinders(read->mode), *read, stop));
    std::fwrite(answer.constData(), 1, static_cast<std::size_t>(answer.size()), stdout);
    std::fflush(stdout);
    return answer.isEmpty() ? 1 : 0;
}

} // namespace tollivar::probe
