#pragma once

#include "companions/capture/media_found.h"
#include "companions/pageprobe/probe_arguments.h"

#include <memory>
#include <vector>

namespace tollivar::probe {

using Finders = std::vector<std::unique_ptr<capture::MediaFinder>>;

/// The ways to look, in the order of the mode.
[[nodiscard]] Finders makeFinders(ProbeMode mode);

/// What the first finder finds whose best is of the wanted kind; when none has that, what the first
/// one finds at all (a page's sound where a video is wanted). A finder that fails is passed over, and
/// the next one begins only before the deadline and the stop. Blocks as long as the finders do.
[[nodiscard]] std::vector<capture::MediaFound> findMedia(const Finders &finders,
                                                         const capture::FindRequest &request,
                                                         platform::AutoResetEvent &stop);

/// The whole program: exit status 0 when records were printed, 1 when none, 2 for bad usage.
/// `arguments` begin behind the program's name. Where something hangs it ends the process itself,
/// within 45 seconds.
[[nodiscard]] int runPageProbe(const QStringList &arguments);

} // namespace tollivar::probe
