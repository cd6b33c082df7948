#include "app/window/update_download.h"

#include "fetch/http/http_client.h"
#include "update/update_info.h"

#include <QFile>

#include <array>

namespace tollivar::app {

using fetch::HttpClient;
using fetch::ReadEnd;
using update::GetResult;

namespace {

// The server knows its clients by these lines, the blank missing behind the agent's colon included.
constexpr auto kHeaders =
    "Accept: */*\r\nUser-Agent:Mozilla/4.0 (compatible; MSIE 5.00; Windows 98)\r\n\r\n";
constexpr int kStatusOk = 200;
constexpr std::chrono::seconds kLimit{60};

GetResult copyBody(HttpClient &client, QFile &file)
{
    std::array<std::byte, 8'192> buffer{};
    qint64 total = 0;
    for (;;) {
        const auto read = client.read(buffer);
        switch (read.end) {
        case ReadEnd::Stopped:
            return GetResult::Cancelled;
        case ReadEnd::Broken:
            return GetResult::NetworkError;
        case ReadEnd::Body:
            return GetResult::Done;
        case ReadEnd::Data:
            break;
        }
        const auto count = static_cast<qint64>(read.bytes);
        total += count;
        if (total > update::kMaximumInfoBytes) {
            return GetResult::Refused;
        }
        if (file.write(reinterpret_cast<const char *>(buffer.data()), count) != count) {
            return GetResult::CannotCreateFile;
        }
    }
}

} // namespace

GetResult downloadUpdateInfo(const QString &address, const QString &path,
                             platform::AutoResetEvent &stop)
{
    const auto client =
        HttpClient::open({.address = address, .headers = kHeaders, .limit = kLimit}, stop);
    if (!client) {
        return stop.isSet() ? GetResult::Cancelled : GetResult::NetworkError;
    }
    if ((*client)->statusCode() != kStatusOk) {
        return GetResult::Refused;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return GetResult::CannotCreateFile;
    }
    return copyBody(**client, file);
}

} // namespace tollivar::app
