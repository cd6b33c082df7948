#include "fetch/http/http_client.h"

#include <QByteArrayList>

#include <curl/curl.h>

#include <array>
#include <cstring>
#include <map>
#include <mutex>
#include <vector>

namespace tollivar::fetch {

using platform::AutoResetEvent;
using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

/// What the library may hand over beyond the caller's buffer before it is told to pause.
constexpr std::size_t kOverflowLimit = 1024UL * 1024;
/// A fast server fills it whole, which saves three of four system calls; a slow one never does.
constexpr long kLibraryBuffer = 512L * 1024;
constexpr long kMaximumRedirects = 20;
constexpr int kPollMs = 1000;
constexpr std::size_t kMaximumHeaderBytes = 1024UL * 1024;

struct FreeEasy {
    void operator()(CURL *easy) const { curl_easy_cleanup(easy); }
};
struct FreeMulti {
    void operator()(CURLM *multi) const { curl_multi_cleanup(multi); }
};
struct FreeList {
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};

void setUpLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

QByteArray lowerName(QByteArrayView line)
{
    return line.toByteArray().trimmed().toLower();
}

/// A header as the library takes it; without a value it would be left out unless it ends in ";".
QByteArray libraryHeader(const QByteArray &line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon > 0 && line.mid(colon + 1).trimmed().isEmpty()) {
        return line.left(colon) + ';';
    }
    return line;
}

bool hasControlCharacter(QByteArrayView line)
{
    return std::any_of(line.begin(), line.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return (code < 0x20 && code != '\t') || code == 0x7F;
    });
}

} // namespace

struct HttpClient::Private {
    explicit Private(AutoResetEvent &stopEvent) : stop(stopEvent) {}
    ~Private();
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    Result<void> prepare(const HttpRequest &request);
    Result<void> setHeaders(const HttpRequest &request);
    Result<void> waitForHeaders();
    void perform();
    void waitForActivity();
    std::size_t takeBody(const char *data, std::size_t size);
    void takeHeader(QByteArrayView line);
    [[nodiscard]] bool isFinalAnswer() const;
    [[nodiscard]] QString failureText() const;

    AutoResetEvent &stop;
    std::unique_ptr<CURLM, FreeMulti> multi;
    std::unique_ptr<CURL, FreeEasy> easy;
    std::unique_ptr<curl_slist, FreeList> headerLines;
    /// Ends before the handles do: the wake-up must not meet a handle that is gone.
    std::unique_ptr<AutoResetEvent::Watch> watch;

    std::map<QByteArray, QByteArray> headers;
    std::size_t headerBytes = 0;
    bool hasHeaders = false;
    bool isDone = false;
    CURLcode result = CURLE_OK;
    /// What the library has to say about a failure, more than the code tells; may stay empty.
    std::array<char, CURL_ERROR_SIZE> reason = {};

    /// Where the library's bytes go while a read is under way.
    std::span<std::byte> target;
    std::size_t filled = 0;
    std::vector<std::byte> overflow;
    std::size_t overflowBegin = 0;
    bool isPaused = false;
};

HttpClient::Private::~Private()
{
    watch.reset();
    if (multi && easy) {
        curl_multi_remove_handle(multi.get(), easy.get());
    }
}

Result<void> HttpClient::Private::setHeaders(const HttpRequest &request)
{
    // The library adds these by itself unless it is told not to.
    QByteArrayList lines = {"Accept:", "User-Agent:"};
    for (const QByteArray &part : request.headers.split('\n')) {
        const QByteArray line = part.endsWith('\r') ? part.chopped(1) : part;
        if (line.isEmpty()) {
            continue;
        }
        if (hasControlCharacter(line) || line.indexOf(':') < 1) {
            return failure(ErrorKind::AskUser, QStringLiteral("a request header is malformed"));
        }
        lines.removeIf([&line](const QByteArray &known) {
            return known.endsWith(':') && lowerName(line).startsWith(lowerName(known));
        });
        lines.append(libraryHeader(line));
    }
    if (request.reload) {
        lines.append("Cache-Control: no-cache");
    }
    for (const QByteArray &line : lines) {
        headerLines.reset(curl_slist_append(headerLines.release(), line.constData()));
    }
    return {};
}

Result<void> HttpClient::Private::prepare(const HttpRequest &request)
{
    setUpLibrary();
    if (auto set = setHeaders(request); !set) {
        return set;
    }
    multi.reset(curl_multi_init());
    easy.reset(curl_easy_init());
    if (!multi || !easy) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no connection can be set up"));
    }
    const auto onBody = +[](char *data, std::size_t one, std::size_t count, void *self) {
        return static_cast<Private *>(self)->takeBody(data, one * count);
    };
    const auto onHeader = +[](char *data, std::size_t one, std::size_t count, void *self) {
        auto *const client = static_cast<Private *>(self);
        client->headerBytes += one * count;
        if (client->headerBytes > kMaximumHeaderBytes) {
            return std::size_t{0};
        }
        client->takeHeader(QByteArrayView(data, static_cast<qsizetype>(one * count)));
        return one * count;
    };
    CURL *const handle = easy.get();
    curl_easy_setopt(
        handle, CURLOPT_URL,
        QString(request.address).replace(u' ', QStringLiteral("%20")).toUtf8().constData());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kMaximumRedirects);
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(handle, CURLOPT_BUFFERSIZE, kLibraryBuffer);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headerLines.get());
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(request.limit.count()));
    curl_easy_setopt(handle, CURLOPT_NOBODY, request.headOnly ? 1L : 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, onBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, reason.data());
    if (curl_multi_add_handle(multi.get(), handle) != CURLM_OK) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no connection can be set up"));
    }
    watch = std::make_unique<AutoResetEvent::Watch>(
        stop, [wakened = multi.get()] { curl_multi_wakeup(wakened); });
    return {};
}

void HttpClient::Private::takeHeader(QByteArrayView line)
{
    if (line.startsWith("HTTP/")) {
        headers.clear(); // Only the headers of the final answer count.
        return;
    }
    if (line.trimmed().isEmpty()) {
        hasHeaders = hasHeaders || isFinalAnswer();
        return;
    }
    const qsizetype colon = line.indexOf(':');
    if (colon > 0) {
        headers[lowerName(line.first(colon))] = line.sliced(colon + 1).toByteArray().trimmed();
    }
}

std::size_t HttpClient::Private::takeBody(const char *data, std::size_t size)
{
    hasHeaders = true;
    const std::size_t direct = std::min(size, target.size() - filled);
    if (size - direct > 0 && overflow.size() - overflowBegin >= kOverflowLimit) {
        isPaused = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    if (direct > 0) {
        std::memcpy(target.data() + filled, data, direct);
        filled += direct;
    }
    const auto *const rest = reinterpret_cast<const std::byte *>(data) + direct;
    overflow.insert(overflow.end(), rest, rest + (size - direct));
    return size;
}

bool HttpClient::Private::isFinalAnswer() const
{
    long status = 0;
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isRedirect = status >= 300 && status < 400 && headers.contains("location");
    return status >= 200 && !isRedirect;
}

QString HttpClient::Private::failureText() const
{
    return QString::fromUtf8(reason.front() != '\0' ? reason.data() : curl_easy_strerror(result));
}

void HttpClient::Private::perform()
{
    int running = 0;
    if (curl_multi_perform(multi.get(), &running) != CURLM_OK) {
        isDone = true;
        result = CURLE_RECV_ERROR;
        return;
    }
    int waiting = 0;
    while (const CURLMsg *const message = curl_multi_info_read(multi.get(), &waiting)) {
        if (message->msg == CURLMSG_DONE) {
            isDone = true;
            result = message->data.result;
        }
    }
}

void HttpClient::Private::waitForActivity()
{
    curl_multi_poll(multi.get(), nullptr, 0, kPollMs, nullptr);
}

Result<void> HttpClient::Private::waitForHeaders()
{
    for (;;) {
        if (stop.isSet()) {
            return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
        }
        perform();
        if (isDone && result != CURLE_OK && !hasHeaders) {
            return failure(ErrorKind::TryAgain, failureText(), static_cast<int>(result));
        }
        if (isDone || hasHeaders) {
            return {};
        }
        waitForActivity();
    }
}

Result<std::unique_ptr<HttpClient>> HttpClient::open(const HttpRequest &request,
                                                     AutoResetEvent &stop)
{
    auto d = std::make_unique<Private>(stop);
    if (const auto prepared = d->prepare(request); !prepared) {
        return tl::unexpected(prepared.error());
    }
    if (const auto waited = d->waitForHeaders(); !waited) {
        return tl::unexpected(waited.error());
    }
    return std::unique_ptr<HttpClient>(new HttpClient(std::move(d)));
}

HttpClient::HttpClient(std::unique_ptr<Private> data) : d(std::move(data)) {}

HttpClient::~HttpClient() = default;

int HttpClient::statusCode() const
{
    long status = 0;
    curl_easy_getinfo(d->easy.get(), CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

std::optional<QByteArray> HttpClient::header(QByteArrayView name) const
{
    const auto found = d->headers.find(lowerName(name));
    return found == d->headers.end() ? std::nullopt : std::optional(found->second);
}

QString HttpClient::finalAddress() const
{
    const char *address = nullptr;
    curl_easy_getinfo(d->easy.get(), CURLINFO_EFFECTIVE_URL, &address);
    return QString::fromUtf8(address);
}

ReadResult HttpClient::read(std::span<std::byte> buffer)
{
    if (d->stop.isSet()) {
        return {.end = ReadEnd::Stopped};
    }
    const std::size_t waiting = d->overflow.size() - d->overflowBegin;
    if (waiting > 0) {
        const std::size_t count = std::min(waiting, buffer.size());
        std::memcpy(buffer.data(), d->overflow.data() + d->overflowBegin, count);
        d->overflowBegin += count;
        if (d->overflowBegin == d->overflow.size()) {
            d->overflow.clear();
            d->overflowBegin = 0;
        }
        return {.bytes = count};
    }
    d->target = buffer;
    d->filled = 0;
    while (d->filled == 0 && !d->isDone && !d->stop.isSet()) {
        if (d->isPaused) {
            d->isPaused = false;
            curl_easy_pause(d->easy.get(), CURLPAUSE_CONT);
        }
        d->perform();
        if (d->filled == 0 && !d->isDone) {
            d->waitForActivity();
        }
    }
    d->target = {};
    const std::size_t count = std::exchange(d->filled, 0);
    if (count > 0) {
        return {.bytes = count};
    }
    if (d->stop.isSet()) {
        return {.end = ReadEnd::Stopped};
    }
    return {.end = d->result == CURLE_OK ? ReadEnd::Body : ReadEnd::Broken};
}

} // namespace tollivar::fetch
