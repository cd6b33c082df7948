#include "fetch/title_fetch.h"

#include "fetch/http/http_client.h"
#include "fetch/text/page_title.h"

#include <array>

namespace tollivar::fetch {

namespace {

constexpr std::size_t kReadSize = 8'192;
/// Pages that go on beyond this without a title are given up.
constexpr std::size_t kMaximumPageSize = 1024UL * 1024;
constexpr int kStatusOk = 200;

} // namespace

FetchedTitle fetchTitle(const QString &address, platform::AutoResetEvent &stop)
{
    // There is no blank behind "User-Agent:"; pages have been seen to answer to this very text.
    const auto client = HttpClient::open(
        {.address = address,
         .headers =
             "Accept: */*\r\nUser-Agent:Mozilla/4.0 (compatible; MSIE 5.00; Windows 98)\r\n\r\n"},
        stop);
    if (stop.poll()) {
        return {.result = StepResult::Stopped};
    }
    if (!client || (*client)->statusCode() != kStatusOk) {
        return {.result = StepResult::Failed};
    }
    PageTitleReader reader;
    std::array<std::byte, kReadSize> buffer = {};
    for (std::size_t total = 0; total < kMaximumPageSize;) {
        const ReadResult read = (*client)->read(buffer);
        if (stop.poll()) {
            return {.result = StepResult::Stopped};
        }
        if (read.bytes == 0) {
            break;
        }
        total += read.bytes;
        if (reader.feed({reinterpret_cast<const char *>(buffer.data()),
                         static_cast<qsizetype>(read.bytes)})) {
            return {.result = StepResult::Done, .title = reader.title()};
        }
    }
    return {.result = StepResult::Done};
}

} // namespace tollivar::fetch
