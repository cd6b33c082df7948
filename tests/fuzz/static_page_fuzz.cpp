// A page of any server: its text in, addresses of media and the answer's records out.

#include "companions/capture/answer_writer.h"
#include "companions/pageprobe/static_page.h"
#include "fetch/parser_answer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace tollivar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray page(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto media = probe::readStaticPage({.bytes = page,
                                              .address = u"http://site.example/folder/page.html"_s,
                                              .contentType = "text/html"},
                                             capture::MediaPreference::Video);
    for (const capture::MediaFound &medium : media) {
        if (!medium.address.startsWith(u"http://") && !medium.address.startsWith(u"https://")) {
            std::abort();
        }
    }
    // No page can add a record, or put one into another's place.
    const auto records = fetch::readAnswer(QString::fromUtf8(capture::writeAnswer(media)));
    if (records.size() != media.size()) {
        std::abort();
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (records[i].address != media[i].address || records[i].protocol != 1) {
            std::abort();
        }
    }
    return 0;
}
