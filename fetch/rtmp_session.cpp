#include "fetch/rtmp_session.h"

#include "platform/tcp_connect.h"
#include "platform/text_encoding.h"

#include <QByteArray>

#include <librtmp/log.h>
#include <librtmp/rtmp.h>

#include <cstdlib>
#include <limits>
#include <mutex>
#include <optional>

namespace tollivar::fetch {

using platform::TcpConnection;

namespace {

constexpr int kLogLevel = 3;
/// How much of the stream the server may send ahead, in milliseconds: all of it.
constexpr int kWholeBuffer = 36'000'000;
constexpr int kBufferBeyondEnd = 5'000;
constexpr unsigned kPlainPort = 1'935;
constexpr unsigned kTunnelPort = 80;
constexpr unsigned kSecurePort = 443;
/// The library's mark of a stream whose pause was answered and that still gave nothing.
constexpr int kPausedInVain = 3;

void dropMessage(int /*level*/, const char * /*format*/, va_list /*arguments*/) {}

/// What the library keeps for the whole process is set up once, before two sessions can meet in it.
void setUpLibrary()
{
    static std::once_flag done;
    std::call_once(done, [] {
        RTMP_LogSetLevel(static_cast<RTMP_LogLevel>(kLogLevel));
        RTMP_LogSetCallback(dropMessage);
        RTMP *first = RTMP_Alloc();
        RTMP_Init(first);
        RTMP_Free(first);
    });
}

struct FreeText {
    void operator()(char *text) const { std::free(text); }
};

/// The parts of an address; the texts point into `text` but for the play path, which is our own.
struct Target {
    QByteArray text;
    int protocol = RTMP_PROTOCOL_RTMP;
    AVal host{};
    unsigned port = 0;
    AVal playPath{};
    AVal app{};
    std::unique_ptr<char, FreeText> ownedPlayPath;
};

unsigned defaultPort(int protocol)
{
    if ((protocol & RTMP_FEATURE_SSL) != 0) {
        return kSecurePort;
    }
    return (protocol & RTMP_FEATURE_HTTP) != 0 ? kTunnelPort : kPlainPort;
}

std::optional<Target> parse(const QString &address)
{
    Target target;
    target.text = platform::encodeSystem(address);
    // The parser gives its own reading of a text with a line end or a NUL in it.
    for (const char byte : std::as_const(target.text)) {
        if (static_cast<unsigned char>(byte) <= ' ') {
            return std::nullopt;
        }
    }
    const bool isAddress = RTMP_ParseURL(target.text.constData(), &target.protocol, &target.host,
                                         &target.port, &target.playPath, &target.app) != 0;
    target.ownedPlayPath.reset(target.playPath.av_val);
    constexpr unsigned kLargestPort = 65'535;
    if (!isAddress || target.host.av_len <= 0 || target.port > kLargestPort ||
        (target.protocol & RTMP_FEATURE_MFP) != 0) {
        return std::nullopt;
    }
    if (target.port == 0) {
        target.port = defaultPort(target.protocol);
    }
    return target;
}

/// Texts that the library keeps pointers to as long as the session lives.
class Overrides {
public:
    explicit Overrides(const tasks::TaskInfo &task)
        : m_tcUrl(platform::encodeSystem(task.strTcUrl))
        , m_app(platform::encodeSystem(task.strApp))
        , m_swfUrl(platform::encodeSystem(task.strSwfUrl))
        , m_pageUrl(platform::encodeSystem(task.strPageUrl))
        , m_playPath(platform::encodeSystem(task.strPlayPath))
        , m_flashVersion(platform::encodeSystem(task.strFlashVer))
    {
    }

    /// Gives the library address, overrides and time limit.
    void setUp(RTMP *session, Target &target, std::chrono::seconds timeLimit)
    {
        if (m_tcUrl.isEmpty()) {
            m_tcUrl = QByteArray(RTMPProtocolStringsLower[target.protocol]) + "://" +
                      text(target.host) + ':' + QByteArray::number(target.port) + '/' +
                      (m_app.isEmpty() ? text(target.app) : m_app);
        }
        AVal tcUrl = value(m_tcUrl);
        AVal app = m_app.isEmpty() ? target.app : value(m_app);
        AVal swfUrl = value(m_swfUrl);
        AVal pageUrl = value(m_pageUrl);
        AVal playPath = m_playPath.isEmpty() ? target.playPath : value(m_playPath);
        AVal flashVersion = value(m_flashVersion);
        AVal none{};
        RTMP_SetupStream(session, target.protocol, &target.host, target.port, &none, &playPath,
                         &tcUrl, &swfUrl, &pageUrl, &app, &none, &none, 0, &flashVersion, &none,
                         &none, 0, 0, FALSE, timeLimit.count());
        // A tunnel has no way to tell that its buffer runs empty.
        if ((target.protocol & RTMP_FEATURE_HTTP) == 0) {
            session->Link.lFlags |= RTMP_LF_BUFX;
        }
    }

private:
    static AVal value(QByteArray &text) { return {text.data(), static_cast<int>(text.size())}; }
    static QByteArray text(const AVal &part) { return {part.av_val, part.av_len}; }

    QByteArray m_tcUrl;
    QByteArray m_app;
    QByteArray m_swfUrl;
    QByteArray m_pageUrl;
    QByteArray m_playPath;
    QByteArray m_flashVersion;
};

struct CloseSession {
    void operator()(RTMP *session) const
    {
        RTMP_Close(session);
        RTMP_Free(session);
    }
};

} // namespace

struct RtmpSession::Private {
    Private(Target address, const tasks::TaskInfo &task, platform::AutoResetEvent &stopEvent)
        : stop(stopEvent)
        , target(std::move(address))
        , overrides(task)
        , rtmp(RTMP_Alloc())
    {
    }

    platform::AutoResetEvent &stop;
    Target target;
    Overrides overrides;
    std::unique_ptr<TcpConnection> connection;
    std::optional<platform::AutoResetEvent::Watch> watch;
    /// Last, so that it is closed while everything it points to is still there.
    std::unique_ptr<RTMP, CloseSession> rtmp;
    int bufferTime = kWholeBuffer;
    bool hasReconnected = false;

    bool shakeHands()
    {
        rtmp->m_sb.sb_timedout = FALSE;
        rtmp->m_pausing = 0;
        rtmp->m_fDuration = 0;
        rtmp->m_sb.sb_socket = static_cast<int>(connection->release());
        rtmp->m_bSendCounter = TRUE;
        return RTMP_Connect1(rtmp.get(), nullptr) != 0;
    }

    /// Pauses the stream for a moment; the library's own way sleeps through a stop.
    bool toggle()
    {
        constexpr std::chrono::seconds kMoment{1};
        if (rtmp->m_pausing == 0) {
            if (RTMP_SendPause(rtmp.get(), TRUE, static_cast<int>(rtmp->m_pauseStamp)) == 0) {
                return false;
            }
            rtmp->m_pausing = 1;
            if (stop.wait(kMoment)) {
                stop.set(); // The caller's own poll takes the request back.
                return false;
            }
        }
        const bool isSent =
            RTMP_SendPause(rtmp.get(), FALSE, static_cast<int>(rtmp->m_pauseStamp)) != 0;
        rtmp->m_pausing = kPausedInVain;
        return isSent;
    }

    bool reconnect()
    {
        if (hasReconnected) {
            return false;
        }
        hasReconnected = true;
        return RTMP_ReconnectStream(rtmp.get(), static_cast<int>(rtmp->m_pauseStamp)) != 0;
    }

    void extendBuffer()
    {
        constexpr double kMilliseconds = 1'000;
        constexpr double kLongest = 1e9;
        const double duration = RTMP_GetDuration(rtmp.get()) * kMilliseconds;
        // Hostile durations stay out of the conversion.
        if (duration > bufferTime && duration < kLongest) {
            bufferTime = static_cast<int>(duration) + kBufferBeyondEnd;
            RTMP_SetBufferMS(rtmp.get(), bufferTime);
            RTMP_UpdateBufferMS(rtmp.get());
        }
    }
};

RtmpSession::RtmpSession(std::unique_ptr<Private> data) : d(std::move(data)) {}

RtmpSession::~RtmpSession() = default;

tl::expected<std::unique_ptr<RtmpSession>, RtmpSession::Failure>
RtmpSession::open(const tasks::TaskInfo &task, platform::AutoResetEvent &stop,
                  std::chrono::seconds timeLimit)
{
    setUpLibrary();
    platform::ignoreBrokenConnections();
    auto target = parse(task.strDownloadUrl);
    if (!target) {
        return tl::unexpected(Failure::Address);
    }
    auto data = std::make_unique<Private>(std::move(*target), task, stop);
    RTMP_Init(data->rtmp.get());
    data->overrides.setUp(data->rtmp.get(), data->target, timeLimit);
    RTMP_SetBufferMS(data->rtmp.get(), kWholeBuffer);
    const QString host = QString::fromUtf8(data->target.host.av_val, data->target.host.av_len);
    auto connection = TcpConnection::connect(host, static_cast<std::uint16_t>(data->target.port),
                                             timeLimit, stop);
    if (!connection) {
        return tl::unexpected(Failure::Connection);
    }
    data->connection = std::move(*connection);
    data->connection->setTimeLimit(timeLimit);
    data->watch.emplace(stop, [wake = data->connection.get()] { wake->wake(); });
    if (!data->shakeHands()) {
        return tl::unexpected(Failure::Connection);
    }
    if (RTMP_ConnectStream(data->rtmp.get(), 0) == 0) {
        return tl::unexpected(Failure::Stream);
    }
    return std::unique_ptr<RtmpSession>(new RtmpSession(std::move(data)));
}

RtmpRead RtmpSession::read(std::span<std::byte> buffer)
{
    RTMP *rtmp = d->rtmp.get();
    const int count =
        RTMP_Read(rtmp, reinterpret_cast<char *>(buffer.data()), static_cast<int>(buffer.size()));
    if (count > 0) {
        d->extendBuffer();
        return {static_cast<std::size_t>(count), RtmpEnd::None};
    }
    if (rtmp->m_read.status == RTMP_READ_COMPLETE) {
        return {0, RtmpEnd::Complete};
    }
    const bool isTimeOut = RTMP_IsTimedout(rtmp) != 0 && RTMP_IsConnected(rtmp) != 0;
    return {0, isTimeOut ? RtmpEnd::TimedOut : RtmpEnd::Broken};
}

RtmpResume RtmpSession::resume()
{
    RTMP *rtmp = d->rtmp.get();
    RTMP_SetBufferMS(rtmp, d->bufferTime);
    if (rtmp->m_pausing == kPausedInVain ? d->reconnect() : d->toggle()) {
        // Else every read would tell the old end again.
        rtmp->m_read.status = 0;
        return RtmpResume::GoesOn;
    }
    return RTMP_IsTimedout(rtmp) != 0 ? RtmpResume::TimedOut : RtmpResume::Broken;
}

double RtmpSession::duration() const
{
    return std::max(0.0, RTMP_GetDuration(d->rtmp.get()));
}

std::uint32_t RtmpSession::timestamp() const
{
    return d->rtmp->m_read.timestamp;
}

} // namespace tollivar::fetch
