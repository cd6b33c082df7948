#include "companions/clip_player/player_arguments.h"

namespace tollivar::player {

using namespace Qt::StringLiterals;
using platform::ErrorKind;

platform::Result<QString> readArguments(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        return QString();
    }
    if (arguments.front() != u"-file"_s) {
        return platform::failure(ErrorKind::AskUser, u"unknown option %1"_s.arg(arguments.front()));
    }
    if (arguments.size() != 2 || arguments.back().isEmpty()) {
        return platform::failure(ErrorKind::AskUser, u"-file wants one file"_s);
    }
    return arguments.back();
}

} // namespace tollivar::player
