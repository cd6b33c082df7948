#pragma once

#include "platform/child_process.h"
#include "tests/support/sandbox.h"

#include <QString>

#include <memory>

namespace tollivar::test {

/// nginx with its RTMP module on a free port: plays the recorded streams of a folder under "vod",
/// and what a publisher pushes to "live".
///
/// Threads: the test's.
/// Owns:    the server and its folder.
class RtmpServer {
public:
    RtmpServer();
    ~RtmpServer();
    RtmpServer(const RtmpServer &) = delete;
    RtmpServer &operator=(const RtmpServer &) = delete;

    /// "rtmp://127.0.0.1:PORT/" + path
    [[nodiscard]] QString address(const QString &path) const;
    [[nodiscard]] quint16 port() const { return m_port; }
    /// Records a few seconds of pictures and sound, with ffmpeg's codec options, as a stream of
    /// "vod"; returns the file.
    QString record(const QString &name, const QStringList &codecs, int seconds = 4);
    /// Begins to push an endless stream to "live"; ends when the result goes.
    [[nodiscard]] std::unique_ptr<platform::ChildProcess> publish(const QString &name) const;
    /// Ends the server, and with it every connection.
    void stop();

private:
    Sandbox m_sandbox;
    quint16 m_port = 0;
    std::unique_ptr<platform::ChildProcess> m_server;
};

/// Runs a program to its end; its output, and a failed test for another status than 0.
QByteArray runToEnd(const QStringList &command);

} // namespace tollivar::test
