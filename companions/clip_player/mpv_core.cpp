#include "companions/clip_player/mpv_core.h"

#include <mpv/client.h>

#include <clocale>

namespace tollivar::player {

using namespace Qt::StringLiterals;
using platform::ErrorKind;

namespace {

struct Option {
    const char *name;
    const char *value;
};

constexpr Option kOptions[] = {
    // Nothing of the person's other players, no scripts, nothing that takes keys or draws controls.
    {"config", "no"},
    {"load-scripts", "no"},
    {"load-auto-profiles", "no"},
    {"load-osd-console", "no"},
    {"load-stats-overlay", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"terminal", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-media-keys", "no"},
    {"resume-playback", "no"},
    // The file that was opened, and none that it or its folder names.
    {"ytdl", "no"},
    {"access-references", "no"},
    {"load-unsafe-playlists", "no"},
    {"autoload-files", "no"},
    {"embeddedfonts", "no"},
    // The core reads the file itself. What a format opens on its own goes through protocols, and
    // none has this name.
    {"demuxer-lavf-o", "protocol_whitelist=none"},
    // Pictures go to our window, sound to the desktop; without a sound device it plays in silence.
    {"vo", "libmpv"},
    {"hwdec", "no"},
    {"ao", "pulse,alsa,null"},
    {"audio-client-name", "ClipPlayer"},
    {"volume-max", "100"},
    // At its end a file stays where it is, so that one can go back.
    {"idle", "yes"},
    {"keep-open", "yes"},
    {"keep-open-pause", "no"},
};

} // namespace

void EndMpv::operator()(mpv_handle *core) const
{
    mpv_terminate_destroy(core);
}

platform::Result<MpvCore> createCore()
{
    std::setlocale(LC_NUMERIC, "C");
    MpvCore core(mpv_create());
    if (!core) {
        return platform::failure(ErrorKind::Hopeless, u"the player library does not start"_s);
    }
    for (const Option &option : kOptions) {
        if (mpv_set_option_string(core.get(), option.name, option.value) < 0) {
            return platform::failure(
                ErrorKind::Hopeless,
                u"the player library does not know %1"_s.arg(QLatin1StringView(option.name)));
        }
    }
    if (const int status = mpv_initialize(core.get()); status < 0) {
        return platform::failure(ErrorKind::Hopeless,
                                 u"the player library does not start: %1"_s.arg(
                                     QString::fromUtf8(mpv_error_string(status))));
    }
    return core;
}

void send(mpv_handle &core, std::initializer_list<QByteArray> words)
{
    std::vector<const char *> list;
    for (const QByteArray &word : words) {
        list.push_back(word.constData());
    }
    list.push_back(nullptr);
    mpv_command_async(&core, 0, list.data());
}

} // namespace tollivar::player
