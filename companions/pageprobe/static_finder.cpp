#include "companions/pageprobe/static_finder.h"

#include "companions/pageprobe/static_page.h"
#include "fetch/http/http_client.h"

#include <array>

namespace tollivar::probe {

using platform::ErrorKind;
using platform::failure;

namespace {

constexpr std::chrono::milliseconds kPageLimit{8'000};
constexpr qsizetype kMaximumPage = 8 * 1024 * 1024;
constexpr std::size_t kReadSize = 64UL * 1024;
constexpr const char *kAgent =
    "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/120.0.0.0 "
    "Safari/537.36";

} // namespace

platform::Result<std::vector<capture::MediaFound>>
StaticFinder::find(const capture::FindRequest &request, platform::AutoResetEvent &stop)
{
    auto client = fetch::HttpClient::open(
        {.address = request.address,
         .headers = QByteArray("Accept: */*\r\nUser-Agent: ") + kAgent + "\r\n",
         .limit = kPageLimit},
        stop);
    if (!client) {
        return tl::unexpected(client.error());
    }
    if ((*client)->statusCode() != 200) {
        return std::vector<capture::MediaFound>{};
    }
    QByteArray page;
    std::array<std::byte, kReadSize> buffer;
    while (page.size() < kMaximumPage) {
        const fetch::ReadResult read = (*client)->read(buffer);
        if (read.end == fetch::ReadEnd::Stopped) {
            return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
        }
        if (read.bytes == 0) {
            break;
        }
        page.append(reinterpret_cast<const char *>(buffer.data()),
                    static_cast<qsizetype>(read.bytes));
    }
    auto media = readStaticPage(page, (*client)->finalAddress(), request.preference);
    for (capture::MediaFound &medium : media) {
        medium.agent = QString::fromLatin1(kAgent);
        medium.referer = (*client)->finalAddress();
    }
    return media;
}

} // namespace tollivar::probe
