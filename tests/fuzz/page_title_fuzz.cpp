#include "fetch/text/page_title.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

/// The title is the same however the page is cut into pieces, and is one line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView page(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    tollivar::fetch::PageTitleReader whole;
    const bool isFound = whole.feed(page);
    tollivar::fetch::PageTitleReader pieces;
    constexpr qsizetype kPiece = 7;
    for (qsizetype i = 0; i < page.size(); i += kPiece) {
        pieces.feed(page.sliced(i, std::min(kPiece, page.size() - i)));
    }
    if (isFound != pieces.feed({})) {
        std::abort();
    }
    if (isFound && (whole.title().isEmpty() || whole.title().contains(u'\n'))) {
        std::abort();
    }
    return 0;
}
