// What a browser says over its pipe, all the way: bytes in, ranked media out.

#include "companions/capture/devtools_message.h"
#include "companions/capture/media_rank.h"
#include "companions/capture/network_watch.h"
#include "companions/capture/page_report.h"
#include "platform/web_address.h"

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tollivar::capture;

namespace {

void check(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qsizetype kMaximumMessage = 16'384;
    constexpr qsizetype kPiece = 1'000;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    MessageSplitter splitter(kMaximumMessage);
    NetworkWatch network;
    PageMedia page;
    for (qsizetype begin = 0; begin < bytes.size(); begin += kPiece) {
        splitter.add(bytes.mid(begin, kPiece));
        while (const auto text = splitter.next()) {
            check(!text->contains('\0') && text->size() <= kMaximumMessage);
            const auto message = parseDevToolsMessage(*text);
            if (!message) {
                continue;
            }
            network.take(*message);
            if (const auto report = parsePageReport(message->content[u"payload"].toString())) {
                page.title = report->title;
                page.played = report->played;
                for (const QString &address : report->offered) {
                    page.offered.push_back(
                        {.namedAddress = address,
                         .address = address,
                         .mediaType = {},
                         .sent = {.cookies = {},
                                  .agent = {},
                                  .referer = refererFor(report->address, address)}});
                }
            }
        }
    }
    page.answered = network.candidates();
    for (const auto preference : {MediaPreference::Video, MediaPreference::Flash}) {
        for (const MediaFound &medium : rankMedia(page, preference)) {
            check(tollivar::platform::isWebAddress(medium.address));
            check(!medium.length || *medium.length >= 0);
        }
    }
    return 0;
}
