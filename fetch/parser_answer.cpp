#include "fetch/parser_answer.h"

#include "platform/ini_file.h"

#include <algorithm>
#include <array>

namespace tollivar::fetch {

namespace {

/// A text beyond this holds no more records; a page of real media has a handful.
constexpr std::size_t kMaximumRecords = 10'000;

using Take = void (*)(AnswerRecord &record, const QString &value);

struct Key {
    QStringView name;
    Take take = nullptr;
};

template<QString AnswerRecord::*Member>
void takeText(AnswerRecord &record, const QString &value)
{
    record.*Member = value;
}

void takeProtocol(AnswerRecord &record, const QString &value)
{
    record.protocol = platform::iniNumber(value);
}

void takeType(AnswerRecord &record, const QString &value)
{
    record.typeDescription = value;
    const qsizetype open = value.indexOf(QLatin1StringView("(*"));
    const qsizetype close = open < 0 ? -1 : value.indexOf(u')', open + 2);
    if (close >= 0) {
        record.extension = value.mid(open + 2, close - open - 2);
    }
}

void ignore(AnswerRecord & /*record*/, const QString & /*value*/) {}

/// In the order in which they are tried.
constexpr std::array kKeys = {
    Key{u"PROTOCOL = ", takeProtocol},
    Key{u"APP = ", takeText<&AnswerRecord::app>},
    Key{u"FLASHVER = ", takeText<&AnswerRecord::flashVer>},
    Key{u"SWFURL = ", takeText<&AnswerRecord::swfUrl>},
    Key{u"TCURL = ", takeText<&AnswerRecord::tcUrl>},
    Key{u"PAGEURL = ", takeText<&AnswerRecord::pageUrl>},
    Key{u"PLAYPATH = ", takeText<&AnswerRecord::playPath>},
    Key{u"URL = ", takeText<&AnswerRecord::address>},
    Key{u"TITLE = ", takeText<&AnswerRecord::title>},
    Key{u"TYPE = ", takeType},
    Key{u"FOLDER = ", takeText<&AnswerRecord::folder>},
    Key{u"COOKIES = ", takeText<&AnswerRecord::cookies>},
    Key{u"AGENT = ", takeText<&AnswerRecord::agent>},
    Key{u"REFERER = ", takeText<&AnswerRecord::referer>},
    Key{u"CONNECTION = ", ignore},
    Key{u"PRAGMA = ", ignore},
    Key{u"CACHECONTROL = ", ignore},
    Key{u"LOCATION = ", takeText<&AnswerRecord::location>},
    Key{u"LENGTH = ", ignore},
};

QStringView withoutLeadingBlanks(QStringView line)
{
    const auto *const begin = std::find_if(line.begin(), line.end(),
                                           [](QChar character) { return !character.isSpace(); });
    return line.sliced(begin - line.begin());
}

} // namespace

std::vector<AnswerRecord> readAnswer(QStringView text)
{
    std::vector<AnswerRecord> records;
    AnswerRecord record;
    for (qsizetype end = text.indexOf(u'\n'); end >= 0 && records.size() < kMaximumRecords;
         end = text.indexOf(u'\n')) {
        const bool hasReturn = end > 0 && text[end - 1] == u'\r';
        const QStringView line = withoutLeadingBlanks(text.first(hasReturn ? end - 1 : end));
        text = text.sliced(end + 1);
        const auto *const key = std::find_if(kKeys.begin(), kKeys.end(), [line](const Key &known) {
            return line.startsWith(known.name);
        });
        if (key == kKeys.end()) {
            records.push_back(std::exchange(record, {}));
        } else {
            key->take(record, line.sliced(key->name.size()).toString());
        }
    }
    return records;
}

} // namespace tollivar::fetch
