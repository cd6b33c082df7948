#include "fetch/text/page_title.h"

#include "platform/text_encoding.h"

#include <algorithm>

namespace tollivar::fetch {

namespace {

constexpr qsizetype kMaximumPageSize = 1024LL * 1024;
constexpr QByteArrayView kWord("title");

/// The name behind the page's first "charset", as far as it looks like one.
QByteArray namedCharset(const QByteArray &lowerPage)
{
    constexpr QByteArrayView key("charset");
    const qsizetype place = lowerPage.indexOf(key);
    if (place < 0) {
        return {};
    }
    QByteArray name;
    for (qsizetype i = place + key.size(); i < lowerPage.size(); ++i) {
        const char character = lowerPage[i];
        const bool isPartOfName = (character >= 'a' && character <= 'z') ||
                                  (character >= '0' && character <= '9') || character == '-' ||
                                  character == '_';
        if (isPartOfName) {
            name += character;
        } else if (!name.isEmpty() || !QByteArrayView("= \"'").contains(character)) {
            break;
        }
    }
    return name;
}

/// Line breaks inside a title are blanks; one that survives that ends it.
QString cleaned(QString title)
{
    title.removeIf([](QChar character) {
        return character == u'<' || character == u'>' || character == u'/';
    });
    // A single quote on purpose: a double one could not stand in a file name.
    title.replace(QLatin1StringView("&quot;"), QLatin1StringView("'"));
    title.replace(QLatin1StringView("&amp;"), QLatin1StringView("&"));
    title = title.trimmed();
    title.replace(QLatin1StringView("\r\n"), QLatin1StringView(" "));
    std::replace_if(
        title.begin(), title.end(),
        [](QChar character) {
            return character == u'\r' || character == u'\n' || character == u'\t';
        },
        QChar(u' '));
    title = title.trimmed();
    return title.isEmpty() ? QStringLiteral("Unknown Title Video") : title;
}

} // namespace

bool PageTitleReader::feed(QByteArrayView piece)
{
    if (m_second >= 0) {
        return true;
    }
    const qsizetype known = m_page.size();
    m_page += piece.first(std::min(piece.size(), kMaximumPageSize - known));
    m_lowerPage += m_page.mid(known).toLower();
    // The word may begin in an earlier piece.
    const qsizetype from = std::max<qsizetype>(known - kWord.size(), 0);
    if (m_first < 0) {
        m_first = m_lowerPage.indexOf(kWord, from);
    }
    if (m_first >= 0) {
        m_second = m_lowerPage.indexOf(kWord, std::max(m_first + 1, from));
    }
    return m_second >= 0;
}

QString PageTitleReader::title() const
{
    const qsizetype begin = m_first + kWord.size();
    const QByteArrayView stretch =
        QByteArrayView(m_page).sliced(begin, std::max<qsizetype>(m_second - begin, 0));
    const bool isOtherCharset = m_lowerPage.contains("charset") && !m_lowerPage.contains("utf-8");
    return cleaned(isOtherCharset ? platform::decodeNamed(stretch, namedCharset(m_lowerPage))
                                  : QString::fromUtf8(stretch));
}

} // namespace tollivar::fetch
