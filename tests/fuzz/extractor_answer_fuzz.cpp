// What an extractor prints: JSON lines in, at most one medium out.

#include "companions/capture/answer_writer.h"
#include "companions/pageprobe/extractor_answer.h"
#include "fetch/parser_answer.h"
#include "platform/web_address.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace tollivar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray answer(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto media = probe::readExtractorAnswer(answer, u"http://site.example/page.html"_s);
    const auto records = fetch::readAnswer(QString::fromUtf8(capture::writeAnswer(media)));
    if (media.size() > 1 || records.size() != media.size()) {
        std::abort();
    }
    if (!records.empty() && !platform::isWebAddress(records.front().address)) {
        std::abort();
    }
    return 0;
}
