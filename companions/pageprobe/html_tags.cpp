#include "companions/pageprobe/html_tags.h"

#include <algorithm>
#include <array>

namespace tollivar::probe {

namespace {

/// More than any page needs; a hostile one ends here.
constexpr std::size_t kMaximumTags = 200'000;
constexpr std::size_t kMaximumAttributes = 200;
constexpr qsizetype kLongestReference = 10;

struct Reference {
    QStringView name;
    QChar character;
};

/// Those that titles and addresses are written with.
constexpr std::array kReferences = {
    Reference{u"amp", u'&'},         Reference{u"lt", u'<'},
    Reference{u"gt", u'>'},          Reference{u"quot", u'"'},
    Reference{u"apos", u'\''},       Reference{u"nbsp", u'\u00a0'},
    Reference{u"ndash", u'\u2013'},  Reference{u"mdash", u'\u2014'},
    Reference{u"hellip", u'\u2026'}, Reference{u"lsquo", u'\u2018'},
    Reference{u"rsquo", u'\u2019'},  Reference{u"ldquo", u'\u201c'},
    Reference{u"rdquo", u'\u201d'},  Reference{u"laquo", u'\u00ab'},
    Reference{u"raquo", u'\u00bb'},  Reference{u"middot", u'\u00b7'},
    Reference{u"bull", u'\u2022'},   Reference{u"copy", u'\u00a9'},
    Reference{u"reg", u'\u00ae'},    Reference{u"trade", u'\u2122'},
    Reference{u"agrave", u'\u00e0'}, Reference{u"aacute", u'\u00e1'},
    Reference{u"auml", u'\u00e4'},   Reference{u"ccedil", u'\u00e7'},
    Reference{u"egrave", u'\u00e8'}, Reference{u"eacute", u'\u00e9'},
    Reference{u"iacute", u'\u00ed'}, Reference{u"ntilde", u'\u00f1'},
    Reference{u"oacute", u'\u00f3'}, Reference{u"ouml", u'\u00f6'},
    Reference{u"uacute", u'\u00fa'}, Reference{u"uuml", u'\u00fc'},
    Reference{u"szlig", u'\u00df'},  Reference{u"Auml", u'\u00c4'},
    Reference{u"Ouml", u'\u00d6'},   Reference{u"Uuml", u'\u00dc'},
};

/// Elements whose content is text, whatever it looks like.
bool holdsText(QStringView name)
{
    return name == u"script" || name == u"style" || name == u"textarea" || name == u"title";
}

QString decodeReference(QStringView name)
{
    if (name.startsWith(u'#')) {
        const bool isHex = name.size() > 1 && name[1].toLower() == u'x';
        bool isNumber = false;
        const uint code = name.sliced(isHex ? 2 : 1).toUInt(&isNumber, isHex ? 16 : 10);
        const bool isCharacter =
            isNumber && code > 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
        return isCharacter ? QStringView(QChar::fromUcs4(code)).toString() : QString();
    }
    for (const Reference &reference : kReferences) {
        if (name == reference.name) {
            return reference.character;
        }
    }
    return {};
}

bool isNameCharacter(QChar character)
{
    return !character.isSpace() && character != u'>' && character != u'/' && character != u'=';
}

/// A place in the page that moves forward.
class Reader {
public:
    explicit Reader(QStringView page) : m_page(page) {}

    [[nodiscard]] bool atEnd() const { return m_place >= m_page.size(); }
    [[nodiscard]] QChar now() const { return m_page[m_place]; }
    void step() { m_place = std::min(m_place + 1, m_page.size()); }

    void skipBlanksAndSlashes()
    {
        while (!atEnd() && (now().isSpace() || now() == u'/')) {
            step();
        }
    }

    void skipBlanks()
    {
        while (!atEnd() && now().isSpace()) {
            step();
        }
    }

    QString takeName()
    {
        const qsizetype begin = m_place;
        while (!atEnd() && isNameCharacter(now())) {
            step();
        }
        return m_page.sliced(begin, m_place - begin).toString().toLower();
    }

    QString takeValue()
    {
        if (!atEnd() && (now() == u'"' || now() == u'\'')) {
            const QChar quote = now();
            step();
            const QString value = takeUntil(quote);
            step();
            return decodeReferences(value);
        }
        const qsizetype begin = m_place;
        while (!atEnd() && !now().isSpace() && now() != u'>') {
            step();
        }
        return decodeReferences(m_page.sliced(begin, m_place - begin));
    }

    /// Stands at `end` afterwards, or at the page's end.
    QString takeUntil(QChar end)
    {
        const qsizetype begin = m_place;
        const qsizetype place = m_page.indexOf(end, begin);
        m_place = place < 0 ? m_page.size() : place;
        return m_page.sliced(begin, m_place - begin).toString();
    }

    QString takeUntilText(QStringView end)
    {
        const qsizetype begin = m_place;
        const qsizetype place = m_page.indexOf(end, begin, Qt::CaseInsensitive);
        m_place = place < 0 ? m_page.size() : place;
        return m_page.sliced(begin, m_place - begin).toString();
    }

    [[nodiscard]] bool isAt(QStringView text) const
    {
        return m_page.sliced(m_place).startsWith(text);
    }

private:
    QStringView m_page;
    qsizetype m_place = 0;
};

HtmlTag takeTag(Reader &reader)
{
    HtmlTag tag;
    tag.name = reader.takeName();
    for (;;) {
        reader.skipBlanksAndSlashes();
        if (reader.atEnd() || reader.now() == u'>') {
            break;
        }
        const QString name = reader.takeName();
        reader.skipBlanks();
        QString value;
        if (!reader.atEnd() && reader.now() == u'=') {
            reader.step();
            reader.skipBlanks();
            value = reader.takeValue();
        } else if (name.isEmpty()) {
            reader.step(); // A stray character: nothing else would move on.
        }
        if (!name.isEmpty() && tag.attributes.size() < kMaximumAttributes) {
            tag.attributes.try_emplace(name, value);
        }
    }
    return tag;
}

} // namespace

QString HtmlTag::attribute(const QString &attributeName) const
{
    const auto found = attributes.find(attributeName);
    return found == attributes.end() ? QString() : found->second;
}

std::vector<HtmlTag> readHtmlTags(QStringView page)
{
    std::vector<HtmlTag> tags;
    Reader reader(page);
    while (tags.size() < kMaximumTags) {
        static_cast<void>(reader.takeUntil(u'<'));
        if (reader.atEnd()) {
            break;
        }
        if (reader.isAt(u"<!--")) {
            static_cast<void>(reader.takeUntilText(u"-->"));
            continue;
        }
        reader.step();
        if (reader.atEnd() || !reader.now().isLetter()) {
            continue;
        }
        HtmlTag tag = takeTag(reader);
        if (holdsText(tag.name)) {
            if (!reader.atEnd()) {
                reader.step();
            }
            tag.content = reader.takeUntilText(QStringLiteral("</") + tag.name);
        }
        tags.push_back(std::move(tag));
    }
    return tags;
}

QString decodeReferences(QStringView text)
{
    QString decoded;
    qsizetype place = 0;
    while (place < text.size()) {
        const qsizetype ampersand = text.indexOf(u'&', place);
        if (ampersand < 0) {
            break;
        }
        decoded += text.sliced(place, ampersand - place);
        const QStringView window =
            text.sliced(ampersand + 1, std::min(kLongestReference, text.size() - ampersand - 1));
        const qsizetype end = window.indexOf(u';');
        const QString character = end < 0 ? QString() : decodeReference(window.first(end));
        if (character.isEmpty()) {
            decoded += u'&';
            place = ampersand + 1;
        } else {
            decoded += character;
            place = ampersand + end + 2;
        }
    }
    decoded += text.sliced(std::min(place, text.size()));
    return decoded;
}

} // namespace tollivar::probe
