#pragma once

#include "platform/auto_reset_event.h"
#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace tollivar::fetch {

/// One GET or HEAD request.
struct HttpRequest {
    QString address;
    /// Header lines as they are sent, each ended by CR LF; an empty last line is accepted. Host is
    /// added; a header that the block does not hold (agent, accepted types) is not sent.
    QByteArray headers{};
    /// If true, caches on the way are told to ask the server again.
    bool reload = true;
    /// If true, asks for the headers alone.
    bool headOnly = false;
    /// If not 0, the exchange breaks after that time, body and all.
    std::chrono::milliseconds limit{0};
};

/// How a read ended.
enum class ReadEnd {
    Data,    ///< bytes came
    Body,    ///< the whole body has been read
    Broken,  ///< the connection broke or fell short of the announced length
    Stopped, ///< the stop event is set; it stays set, for the caller's own poll
};

struct ReadResult {
    std::size_t bytes = 0;
    ReadEnd end = ReadEnd::Data;
};

/// One HTTP exchange, pulled: open, look at status and headers, read the body in pieces.
///
/// Only http and https addresses are fetched, also after redirects; certificates are verified; no
/// proxy is used and no cookie is kept.
///
/// Threads: belongs to the thread that opened it, which may block in open() and read(); the stop
///          event ends both within milliseconds, at any stage.
/// Owns:    the connection; the destructor closes it without waiting for a stalled look-up.
class HttpClient {
public:
    /// Sends the request, follows redirects, returns when the final headers have come.
    /// Errors: TryAgain for every network failure, and with `text` "stopped" when the event was set.
    [[nodiscard]] static platform::Result<std::unique_ptr<HttpClient>>
    open(const HttpRequest &request, platform::AutoResetEvent &stop);

    ~HttpClient();
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;

    [[nodiscard]] int statusCode() const;
    /// The last value of a header of the final answer, found without regard to case.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
    /// The address that answered, after redirects.
    [[nodiscard]] QString finalAddress() const;

    /// Waits until bytes come and copies at most `buffer.size()` of them.
    [[nodiscard]] ReadResult read(std::span<std::byte> buffer);

private:
    struct Private;
    explicit HttpClient(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::fetch
