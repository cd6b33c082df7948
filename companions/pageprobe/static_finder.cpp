#include "companions/pageprobe/static_finder.h"

#include "companions/pageprobe/probe_headers.h"
#include "companions/pageprobe/static_page.h"
#include "fetch/http/http_client.h"

#include <QList>

#include <array>

namespace tollivar::probe {

using platform::ErrorKind;
using platform::failure;

namespace {

constexpr std::chrono::milliseconds kPageLimit{8'000};
constexpr qsizetype kMaximumPage = 8LL * 1024 * 1024;
constexpr std::size_t kReadSize = 64UL * 1024;

bool isPage(const QByteArray &contentType)
{
    const QByteArray type = contentType.split(';').front().trimmed().toLower();
    return type.isEmpty() || type == "text/html" || type == "application/xhtml+xml";
}

/// Up to the limit, or as much of it as came before the connection broke.
platform::Result<QByteArray> bodyOf(fetch::HttpClient &client)
{
    QByteArray body;
    std::array<std::byte, kReadSize> buffer = {};
    while (body.size() < kMaximumPage) {
        const fetch::ReadResult read = client.read(buffer);
        if (read.end == fetch::ReadEnd::Stopped) {
            return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
        }
        body.append(reinterpret_cast<const char *>(buffer.data()),
                    static_cast<qsizetype>(read.bytes));
        if (read.end != fetch::ReadEnd::Data) {
            break;
        }
    }
    return body;
}

} // namespace

platform::Result<std::vector<capture::MediaFound>>
StaticFinder::find(const capture::FindRequest &request, platform::AutoResetEvent &stop)
{
    auto client = fetch::HttpClient::open(
        {.address = request.address, .headers = probeHeaders(), .limit = kPageLimit}, stop);
    if (!client) {
        return tl::unexpected(client.error());
    }
    const QByteArray type = (*client)->header("Content-Type").value_or(QByteArray());
    if ((*client)->statusCode() != 200 || !isPage(type)) {
        return std::vector<capture::MediaFound>{};
    }
    const auto body = bodyOf(**client);
    if (!body) {
        return tl::unexpected(body.error());
    }
    const QString address = (*client)->finalAddress();
    auto media = readStaticPage({.bytes = *body, .address = address, .contentType = type},
                                request.preference);
    for (capture::MediaFound &medium : media) {
        medium.agent = QString::fromLatin1(kProbeAgent);
        medium.referer = address;
    }
    return media;
}

} // namespace tollivar::probe
