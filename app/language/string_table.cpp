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

QString unescaped(QString value)
{
    for (qsizetype slash = value.indexOf(u'\\'); slash >= 0; slash = value.indexOf(u'\\')) {
        const QChar next = slash + 1 < value.size() ? value[slash + 1] : QChar();
        if (next == u'n') {
            value.replace(slash, 2, QChar(u'\n'));
        } else if (next == u'r') {
            value.replace(slash, 2, QChar(u'\r'));
        } else {
            value.remove(slash, 1);
        }
    }
    return value;
}

} // namespace tollivar::language
