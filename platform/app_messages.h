#pragma once

#include <QtGlobal>

namespace tollivar::platform {

/// Numbers of the application messages. Companion programs and threads send them: never renumber.
enum class AppMessageId : quint32 {
    AddressReady = 0x8008,      ///< drop zone (first = 0) or clipboard watch (first = 1)
    CapturedTexts = 0x8014,     ///< the capture browser handed texts over
    TaskEvent = 0x8015,         ///< a worker reports; see tasks/api/task_event.h
    FlashNote = 0x8017,         ///< show or clear the flash-player note
    AddPendingAddress = 0x801A, ///< add the address that a command line brought
    UpdateResult = 0x8028,      ///< result of an update check
    ConversionNews = 0x8032,    ///< a conversion went on (second = 0) or ended (second = 1)
    PlayerEvents = 0x8033,      ///< inside the player: its core has something to tell
    PlayerPicture = 0x8034,     ///< inside the player: a picture is drawn
    BrowserMissing = 0x8035,    ///< a page was not resolved, and there is no browser
};

/// Identifiers of the texts that other processes hand to the running program.
enum class CopyDataId : quint32 {
    CapturedText = 0,       ///< one answer of the capture browser
    CommandLine = 10,       ///< the whole command line of a second start, UTF-16 with its end mark
    BringToFront = 0x10001, ///< nothing; the window is wanted
    AddTasks = 0x10002,     ///< tasks of the terminal front end, see app/task_request.h
};

} // namespace tollivar::platform
