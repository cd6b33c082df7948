#include "app/language/string_table.h"

namespace tollivar::language {

void StringTable::reset()
{
    m_texts.clear();
    for (const auto &[id, english] : builtInTexts()) {
        m_texts.insert(id.toString(), english.toString());
    }
}

void StringTable::set(const QString &id, const QString &text)
{
    if (!text.isEmpty() && m_texts.contains(id)) {
        m_texts.insert(id, text);
    }
}

QString unescaped(QStringView value)
{
    QString text;
    text.reserve(value.size());
    for (qsizetype place = 0; place < value.size(); ++place) {
        if (value[place] != u'\\') {
            text += value[place];
            continue;
        }
        // Only the backslash goes: what stands behind it may be the next one.
        const QChar next = place + 1 < value.size() ? value[place + 1] : QChar();
        if (next == u'n' || next == u'r') {
            text += next == u'n' ? u'\n' : u'\r';
            ++place;
        }
    }
    return text;
}

} // namespace tollivar::language
