#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace tollivar::test {

/// The sample site of `samples/`, served by its own program on a free port as long as this lives.
///
/// Pages and media are those of samples/site and samples/media; see samples/README.md for what each
/// of them is for.
class SampleSite {
public:
    /// `arguments` are handed to the server ("--throttle 100000"). Fails the test when it does not
    /// start.
    explicit SampleSite(const QStringList &arguments = {});
    ~SampleSite();
    SampleSite(const SampleSite &) = delete;
    SampleSite &operator=(const SampleSite &) = delete;

    /// The address of a page or file by its path, such as "video.html" or "media/clip.mp4".
    [[nodiscard]] QString address(const QString &path = {}) const { return m_base + path; }
    /// The same under the site's other name, which browsers take for another site.
    [[nodiscard]] QString otherAddress(const QString &path) const;
    [[nodiscard]] quint16 port() const;

    /// The server's process, for tests of the server itself.
    [[nodiscard]] QProcess &process() { return m_process; }

private:
    QProcess m_process;
    QString m_base;
};

} // namespace tollivar::test
