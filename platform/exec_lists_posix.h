#pragma once

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace tollivar::platform {

/// A list of texts in the form that execve() takes, kept alive together.
class PointerList {
public:
    explicit PointerList(std::vector<QByteArray> texts);

    [[nodiscard]] char *const *data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char *> m_pointers;
};

/// Our environment, with "NAME=value" entries that replace or join it.
[[nodiscard]] PointerList environmentWith(const QStringList &changes);

} // namespace tollivar::platform
