#pragma once

#include "platform/result.h"

#include <QByteArray>

#include <initializer_list>
#include <memory>

struct mpv_handle;

namespace tollivar::player {

struct EndMpv {
    void operator()(mpv_handle *core) const;
};

/// One player core of the library, ended with the pointer.
using MpvCore = std::unique_ptr<mpv_handle, EndMpv>;

/// A core that plays single local files, and nothing else: it reads no configuration, runs no
/// scripts, takes no keys, opens no other file and no connection, whatever a file asks for. Nothing
/// plays before a PictureSource has been made for it.
///
/// Threads: the main thread; sets the process's number format to "C", without which the library
///          refuses to work.
/// Errors:  Hopeless when the library does not start.
[[nodiscard]] platform::Result<MpvCore> createCore();

/// Sends a command without waiting for it; no word of it is expanded.
void send(mpv_handle &core, std::initializer_list<QByteArray> words);

} // namespace tollivar::player
