#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace tollivar::test {

/// A directory of one test's own, removed with the object.
class Sandbox {
public:
    Sandbox();

    /// Absolute, without a trailing separator.
    [[nodiscard]] QString path() const { return m_directory.path(); }
    /// Absolute path of `name` inside.
    [[nodiscard]] QString file(const QString &name) const { return m_directory.filePath(name); }

    /// Writes a file, making its folders; returns its path.
    QString write(const QString &name, const QByteArray &content) const;
    /// The content of a file inside; empty when there is none.
    [[nodiscard]] QByteArray read(const QString &name) const;

private:
    QTemporaryDir m_directory;
};

} // namespace tollivar::test
