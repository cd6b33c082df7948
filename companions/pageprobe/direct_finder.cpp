#include "companions/pageprobe/direct_finder.h"

#include "companions/capture/answer_length.h"
#include "companions/capture/media_rank.h"
#include "companions/pageprobe/media_ending.h"
#include "companions/pageprobe/probe_headers.h"
#include "fetch/http/http_client.h"

#include <QFileInfo>
#include <QUrl>

namespace tollivar::probe {

using capture::FindRequest;
using capture::MediaFound;
using capture::MediaKind;
using fetch::HttpClient;

namespace {

constexpr std::chrono::milliseconds kAnswerLimit{4'000};

/// Asks for the headers, and for the first byte where a server does not know that question.
std::unique_ptr<HttpClient> ask(const QString &address, platform::AutoResetEvent &stop)
{
    auto answer = HttpClient::open({.address = address,
                                    .headers = probeHeaders(),
                                    .reload = false,
                                    .headOnly = true,
                                    .limit = kAnswerLimit},
                                   stop);
    if (answer && (*answer)->statusCode() == 200) {
        return std::move(*answer);
    }
    answer = HttpClient::open({.address = address,
                               .headers = probeHeaders() + "Range: bytes=0-0\r\n",
                               .reload = false,
                               .headOnly = false,
                               .limit = kAnswerLimit},
                              stop);
    return answer ? std::move(*answer) : nullptr;
}

std::optional<std::int64_t> lengthOf(const HttpClient &client)
{
    const auto header = [&client](QByteArrayView name) {
        return QString::fromLatin1(client.header(name).value_or(QByteArray()));
    };
    return capture::lengthOfAnswer(header("Content-Range"), header("Content-Length"));
}

} // namespace

platform::Result<std::vector<MediaFound>> DirectFinder::find(const FindRequest &request,
                                                             platform::AutoResetEvent &stop)
{
    const auto client = ask(request.address, stop);
    if (!client || (client->statusCode() != 200 && client->statusCode() != 206)) {
        return std::vector<MediaFound>{};
    }
    const QString type = QString::fromLatin1(client->header("Content-Type").value_or(QByteArray()));
    const QString final = client->finalAddress();
    const MediaKind kind = capture::kindOf(type, final);
    // A playlist is some lines of text; another finder may know the film that they name.
    if (kind == MediaKind::None || kind == MediaKind::Playlist) {
        return std::vector<MediaFound>{};
    }
    return std::vector<MediaFound>{{.address = request.address,
                                    .title = QFileInfo(QUrl(final).path()).completeBaseName(),
                                    .mediaType = type,
                                    .extension = endingOfMedium(type, final),
                                    .length = lengthOf(*client),
                                    .agent = QString::fromLatin1(kProbeAgent),
                                    .location = final == request.address ? QString() : final}};
}

} // namespace tollivar::probe
