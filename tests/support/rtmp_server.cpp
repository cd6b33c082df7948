#include "tests/support/rtmp_server.h"

#include "platform/auto_reset_event.h"
#include "platform/command_line_text.h"
#include "platform/tcp_connect.h"
#include "tests/support/raw_server.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using platform::ChildProcess;

namespace {

constexpr auto kConfiguration = R"(
load_module /usr/lib/nginx/modules/ngx_rtmp_module.so;
daemon off;
master_process off;
error_log %1/error.log;
pid %1/nginx.pid;
events { worker_connections 256; }
rtmp {
    server {
        listen 127.0.0.1:%2;
        application vod { play %1/media; }
        application live { live on; drop_idle_publisher 2s; }
    }
}
)";

std::unique_ptr<ChildProcess> start(const QStringList &command)
{
    auto child = ChildProcess::start(platform::joinCommandLine(command));
    EXPECT_TRUE(child) << command.front().toStdString();
    return child ? std::move(*child) : nullptr;
}

} // namespace

QByteArray runToEnd(const QStringList &command)
{
    const auto child = start(command);
    QByteArray output;
    std::array<std::byte, 4'096> buffer{};
    while (child->waitForOutput(std::chrono::seconds(60))) {
        const std::size_t count = child->read(buffer);
        if (count == 0) {
            break;
        }
        output.append(reinterpret_cast<const char *>(buffer.data()), static_cast<qsizetype>(count));
    }
    while (!child->exitCode()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(child->exitCode(), 0) << command.join(u' ').toStdString() << '\n'
                                    << output.constData();
    return output;
}

RtmpServer::RtmpServer() : m_port(freePort())
{
    const QString configuration = m_sandbox.write(
        u"nginx.conf"_s,
        QString::fromLatin1(kConfiguration).arg(m_sandbox.path()).arg(m_port).toUtf8());
    m_sandbox.write(u"media/.keep"_s, {});
    m_server = start({u"/usr/sbin/nginx"_s, u"-c"_s, configuration, u"-p"_s, m_sandbox.path(),
                      u"-e"_s, m_sandbox.file(u"start.log"_s)});
    platform::AutoResetEvent never;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (
        !platform::TcpConnection::connect(u"127.0.0.1"_s, m_port, std::chrono::seconds(1), never)) {
        if (m_server->hasEnded() || std::chrono::steady_clock::now() > deadline) {
            ADD_FAILURE() << "nginx does not listen: "
                          << m_sandbox.read(u"start.log"_s).constData();
            return;
        }
        std::this_thread::yield();
    }
}

RtmpServer::~RtmpServer() = default;

QString RtmpServer::address(const QString &path) const
{
    return u"rtmp://127.0.0.1:%1/%2"_s.arg(m_port).arg(path);
}

QString RtmpServer::record(const QString &name, const QStringList &codecs, int seconds)
{
    const QString file = m_sandbox.file(u"media/"_s + name);
    const QString length = QString::number(seconds);
    runToEnd(QStringList{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s, u"-f"_s,
                         u"lavfi"_s, u"-i"_s, u"testsrc=size=160x120:rate=25:duration="_s + length,
                         u"-f"_s, u"lavfi"_s, u"-i"_s,
                         u"sine=sample_rate=44100:duration="_s + length} +
             codecs + QStringList{u"-f"_s, u"flv"_s, file});
    return file;
}

std::unique_ptr<ChildProcess> RtmpServer::publish(const QString &name) const
{
    return start({u"ffmpeg"_s,
                  u"-nostdin"_s,
                  u"-v"_s,
                  u"error"_s,
                  u"-re"_s,
                  u"-f"_s,
                  u"lavfi"_s,
                  u"-i"_s,
                  u"testsrc=size=160x120:rate=25"_s,
                  u"-f"_s,
                  u"lavfi"_s,
                  u"-i"_s,
                  u"sine=sample_rate=44100"_s,
                  u"-c:v"_s,
                  u"flv"_s,
                  u"-g"_s,
                  u"10"_s,
                  u"-c:a"_s,
                  u"libmp3lame"_s,
                  u"-f"_s,
                  u"flv"_s,
                  address(u"live/"_s + name)});
}

void RtmpServer::stop()
{
    m_server.reset();
}

} // namespace tollivar::test
