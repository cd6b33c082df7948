#include "companions/clip_player/look.h"
#include "companions/clip_player/media_player.h"
#include "companions/clip_player/player_arguments.h"
#include "companions/clip_player/player_window.h"
#include "platform/build_config.h"
#include "platform/log.h"

#include <QApplication>

#include <cstdlib>

int main(int argc, char **argv)
{
    using namespace tollivar;
    constexpr int kNoPlayer = 1;
    constexpr int kBadUsage = 2;
    platform::setUpLog();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ClipPlayer"));
    QApplication::setDesktopFileName(platform::build::kApplicationId);
    const auto file = player::readArguments(QApplication::arguments().mid(1));
    if (!file) {
        qCritical("%s", qPrintable(file.error().text));
        return kBadUsage;
    }
    auto core = player::createCore();
    if (!core) {
        qCritical("%s", qPrintable(core.error().text));
        return kNoPlayer;
    }
    player::look::wear(application);
    player::MediaPlayer mediaPlayer(std::move(*core));
    player::PlayerWindow window(mediaPlayer);
    window.show();
    if (!file->isEmpty()) {
        window.open(*file);
    }
    QApplication::exec();
    // Nothing is left to be saved, and a file on a drive that does not answer must not keep a
    // program alive whose window is gone.
    std::_Exit(0);
}
