#include "platform/exec_lists_posix.h"

#include <QFile>

#include <algorithm>

#include <unistd.h>

namespace tollivar::platform {

namespace {

QByteArray nameOf(const QByteArray &entry)
{
    return entry.left(entry.indexOf('='));
}

} // namespace

PointerList::PointerList(std::vector<QByteArray> texts) : m_texts(std::move(texts))
{
    for (QByteArray &text : m_texts) {
        m_pointers.push_back(text.data());
    }
    m_pointers.push_back(nullptr);
}

PointerList environmentWith(const QStringList &changes)
{
    std::vector<QByteArray> entries;
    for (const QString &change : changes) {
        entries.push_back(QFile::encodeName(change));
    }
    const auto changeCount = static_cast<std::ptrdiff_t>(entries.size());
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const QByteArray name = nameOf(*entry);
        const bool isReplaced =
            std::any_of(entries.begin(), entries.begin() + changeCount,
                        [&name](const QByteArray &change) { return nameOf(change) == name; });
        if (!isReplaced) {
            entries.emplace_back(*entry);
        }
    }
    return PointerList(std::move(entries));
}

} // namespace tollivar::platform
