#pragma once

#include "platform/auto_reset_event.h"
#include "platform/result.h"
#include "tasks/api/task_info.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tollivar::fetch {

/// How reading a stream ended.
enum class RtmpEnd {
    None,     ///< bytes came
    Complete, ///< the server says that this was all
    Broken,   ///< the connection is gone
    TimedOut, ///< nothing came for the time limit; resume() may bring more
};

/// What became of a stream that had timed out.
enum class RtmpResume {
    GoesOn,
    TimedOut, ///< nothing more came in time
    Broken,   ///< the connection is gone
};

/// How long a server may be silent.
inline constexpr std::chrono::seconds kStreamTimeLimit{30};

struct RtmpRead {
    std::size_t bytes = 0;
    RtmpEnd end = RtmpEnd::None;
};

/// One stream, played from its start over one RTMP connection.
///
/// Threads: the worker's. While a call blocks, the stop event given to open() ends it within
///          milliseconds; the session is of no use afterwards.
/// Owns:    the connection; the destructor closes it. The event is borrowed and must outlive it.
class RtmpSession {
public:
    /// What opening failed at.
    enum class Failure { Address, Connection, Stream };

    /// Looks the host up, connects, and asks for the stream. The record's RTMP fields stand in for
    /// what the address says.
    /// Errors: why there is no stream; also Connection when stopped.
    [[nodiscard]] static tl::expected<std::unique_ptr<RtmpSession>, Failure>
    open(const tasks::TaskInfo &task, platform::AutoResetEvent &stop,
         std::chrono::seconds timeLimit = kStreamTimeLimit);
    ~RtmpSession();
    RtmpSession(const RtmpSession &) = delete;
    RtmpSession &operator=(const RtmpSession &) = delete;

    /// Blocks for the time limit at most.
    [[nodiscard]] RtmpRead read(std::span<std::byte> buffer);
    /// After a time-out: goes on where the stream stood. First the stream is paused for a moment
    /// and let go on; when that was in vain, it is asked for anew, once.
    [[nodiscard]] RtmpResume resume();

    /// In seconds; 0 while it is not known, and for a live stream.
    [[nodiscard]] double duration() const;
    /// Where the stream stands, in milliseconds.
    [[nodiscard]] std::uint32_t timestamp() const;

private:
    struct Private;
    explicit RtmpSession(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::fetch
