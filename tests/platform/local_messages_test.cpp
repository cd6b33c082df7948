#include "platform/local_messages.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <csignal>
#include <cstring>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::platform::CopyDataId;
using tollivar::platform::ErrorKind;
using tollivar::platform::kMaximumLocalPayload;
using tollivar::platform::LocalMessageServer;
using tollivar::platform::Result;
using tollivar::platform::sendLocalMessage;
using tollivar::test::Sandbox;
using tollivar::test::waitUntil;

constexpr auto kLong = 60s;

QByteArray frame(quint32 id, quint32 count, const QByteArray &payload)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToLittleEndian(id, bytes.data());
    qToLittleEndian(count, bytes.data() + 4);
    return bytes + payload;
}

/// A peer that sends whatever a test wants.
class RawPeer {
public:
    explicit RawPeer(const QString &path) : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::memcpy(address.sun_path, name.constData(),
                    std::min(sizeof(address.sun_path) - 1, static_cast<std::size_t>(name.size())));
        m_isConnected =
            connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0;
    }
    ~RawPeer() { close(m_socket); }
    RawPeer(const RawPeer &) = delete;
    RawPeer &operator=(const RawPeer &) = delete;

    [[nodiscard]] bool isConnected() const { return m_isConnected; }
    void send(const QByteArray &bytes) const
    {
        static_cast<void>(::send(m_socket, bytes.constData(),
                                 static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL));
    }
    void endSending() const { shutdown(m_socket, SHUT_WR); }

    enum class Sees { Nothing, End, Answer };
    [[nodiscard]] Sees look() const
    {
        char byte = 0;
        const ssize_t count = recv(m_socket, &byte, 1, MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return Sees::Nothing;
        }
        return count == 1 && byte == 1 ? Sees::Answer : Sees::End;
    }
    void expectEnd() const
    {
        waitUntil("the peer to be cut off", [this] { return look() == Sees::End; });
    }
    void expectAnswer() const
    {
        waitUntil("the answer", [this] { return look() == Sees::Answer; });
    }

private:
    int m_socket;
    bool m_isConnected = false;
};

class LocalMessages : public testing::Test {
protected:
    void SetUp() override { listen(); }

    void listen()
    {
        auto listening =
            LocalMessageServer::listen(m_path, [this](CopyDataId id, const QByteArray &payload) {
                m_heard.emplace_back(id, payload);
                if (m_onMessage) {
                    m_onMessage();
                }
            });
        ASSERT_TRUE(listening) << qPrintable(listening.error().text);
        m_server = std::move(*listening);
    }

    /// Sends from another thread, as another process would, while the event loop runs here.
    Result<void> send(CopyDataId id, const QByteArray &payload) const
    {
        std::atomic<bool> isDone = false;
        Result<void> result;
        std::thread sender([&] {
            result = sendLocalMessage(m_path, id, payload, kLong);
            isDone = true;
        });
        waitUntil("the message to be sent", [&isDone] { return isDone.load(); });
        sender.join();
        return result;
    }

    void expectStillServing()
    {
        m_heard.clear();
        EXPECT_TRUE(send(CopyDataId::CapturedText, "still there?"));
        EXPECT_EQ(m_heard.size(), 1U);
    }

    Sandbox m_sandbox;
    QString m_path = m_sandbox.file(u"window/socket"_s);
    std::unique_ptr<LocalMessageServer> m_server;
    std::vector<std::pair<CopyDataId, QByteArray>> m_heard;
    std::function<void()> m_onMessage;
};

TEST_F(LocalMessages, arriveWithIdentifierAndPayload)
{
    EXPECT_TRUE(send(CopyDataId::CommandLine, QByteArray("a\0b", 3)));
    EXPECT_TRUE(send(CopyDataId::BringToFront, QByteArray()));
    const std::vector<std::pair<CopyDataId, QByteArray>> expected = {
        {CopyDataId::CommandLine, QByteArray("a\0b", 3)}, {CopyDataId::BringToFront, QByteArray()}};
    EXPECT_EQ(m_heard, expected);
}

TEST_F(LocalMessages, areAnsweredOnlyAfterTheHandlerHasRun)
{
    const RawPeer peer(m_path);
    m_onMessage = [&peer] { EXPECT_EQ(peer.look(), RawPeer::Sees::Nothing); };
    peer.send(frame(0, 2, "hi"));
    peer.expectAnswer();
    EXPECT_EQ(m_heard.size(), 1U);
}

TEST_F(LocalMessages, takeTheLargestPayloadAndSendNoLarger)
{
    const QByteArray largest(kMaximumLocalPayload, 'x');
    EXPECT_TRUE(send(CopyDataId::AddTasks, largest));
    ASSERT_EQ(m_heard.size(), 1U);
    EXPECT_EQ(m_heard.front().second, largest);
    const auto tooLarge = send(CopyDataId::AddTasks, largest + 'x');
    ASSERT_FALSE(tooLarge);
    EXPECT_EQ(tooLarge.error().kind, ErrorKind::AskUser);
}

TEST_F(LocalMessages, findNobodyBeforeAndAfterTheServer)
{
    m_server.reset();
    EXPECT_FALSE(QFileInfo::exists(m_path));
    EXPECT_EQ(send(CopyDataId::CapturedText, "x").error().kind, ErrorKind::Hopeless);
    EXPECT_EQ(sendLocalMessage(u"/no/such/folder/socket"_s, CopyDataId::CapturedText, "x", kLong)
                  .error()
                  .kind,
              ErrorKind::Hopeless);
}

TEST_F(LocalMessages, givesUpOnAServerThatDoesNotAnswer)
{
    // Nobody runs the event loop here.
    const auto sent = sendLocalMessage(m_path, CopyDataId::CapturedText, "x", 50ms);
    ASSERT_FALSE(sent);
    EXPECT_EQ(sent.error().kind, ErrorKind::TryAgain);
}

TEST_F(LocalMessages, listenAgainWhereADeadProcessLeftItsSocket)
{
    m_server.reset();
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        const auto left = LocalMessageServer::listen(m_path, {});
        ::kill(getpid(), SIGKILL);
    }
    waitpid(process, nullptr, 0);
    ASSERT_TRUE(QFileInfo::exists(m_path));
    EXPECT_EQ(send(CopyDataId::CapturedText, "x").error().kind, ErrorKind::Hopeless);
    listen();
    expectStillServing();
}

TEST_F(LocalMessages, areOpenToTheOwnerOnly)
{
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(m_path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const QByteArray folder = QFile::encodeName(QFileInfo(m_path).path());
    ASSERT_EQ(stat(folder.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);

    m_server.reset();
    ASSERT_EQ(chmod(folder.constData(), 0777), 0);
    listen();
    ASSERT_EQ(stat(folder.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(LocalMessages, refuseAFolderThatIsALinkOrNoFolder)
{
    ASSERT_TRUE(QFile::link(m_sandbox.path(), m_sandbox.file(u"link"_s)));
    m_sandbox.write(u"plain"_s, "");
    for (const QString &name : {u"link"_s, u"plain"_s, u"missing/folder"_s}) {
        const auto server = LocalMessageServer::listen(m_sandbox.file(name) + u"/socket"_s, {});
        ASSERT_FALSE(server) << qPrintable(name);
        EXPECT_EQ(server.error().kind, ErrorKind::AskUser);
    }
}

TEST_F(LocalMessages, takeNothingFromAnotherUserEvenThroughAnOpenDoor)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the administrator can be somebody else";
    }
    const QString folder = QFileInfo(m_path).path();
    for (const QString &path : {m_sandbox.path(), folder, m_path}) {
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0777), 0);
    }
    constexpr uid_t nobody = 65'534;
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        const bool isOther = setresuid(nobody, nobody, nobody) == 0;
        const RawPeer peer(m_path);
        peer.send(frame(0, 2, "hi"));
        bool isCutOff = false;
        for (int i = 0; i < 30'000 && !isCutOff; ++i) {
            isCutOff = peer.look() == RawPeer::Sees::End;
            usleep(1'000);
        }
        _exit(isOther && peer.isConnected() && isCutOff ? 0 : 1);
    }
    int status = -1;
    waitUntil("the other user's end",
              [&] { return waitpid(process, &status, WNOHANG) == process; });
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_TRUE(m_heard.empty());
    expectStillServing();
}

TEST_F(LocalMessages, cutOffWhatIsNoFrame)
{
    const std::map<const char *, QByteArray> hostile = {
        {"unknown identifier", frame(7, 2, "hi")},
        {"all bits set", QByteArray(64, '\xFF')},
        {"text", "GET / HTTP/1.1\r\n\r\n"},
        {"huge count", frame(10, 0xFFFF'FFFF, "x")},
        {"count just above the limit", frame(10, kMaximumLocalPayload + 1, "x")},
        {"more than announced", frame(10, 1, "xy")},
        {"two frames", frame(10, 1, "x") + frame(10, 1, "x")},
    };
    for (const auto &[what, bytes] : hostile) {
        SCOPED_TRACE(what);
        const RawPeer peer(m_path);
        peer.send(bytes);
        peer.expectEnd();
        EXPECT_TRUE(m_heard.empty());
    }
    expectStillServing();
}

TEST_F(LocalMessages, dropAFrameThatIsCutAnywhere)
{
    const QByteArray whole = frame(10, 4, "text");
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const RawPeer peer(m_path);
        peer.send(whole.left(length));
        peer.endSending();
        peer.expectEnd();
        EXPECT_TRUE(m_heard.empty());
    }
    expectStillServing();
}

TEST_F(LocalMessages, surviveEveryFlippedBit)
{
    const QByteArray whole = frame(10, 4, "text");
    for (int bit = 0; bit < whole.size() * 8; ++bit) {
        QByteArray flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << (bit % 8)));
        const RawPeer peer(m_path);
        peer.send(flipped);
        peer.endSending();
        waitUntil("an answer or the end",
                  [&peer] { return peer.look() != RawPeer::Sees::Nothing; });
    }
    expectStillServing();
}

TEST_F(LocalMessages, takeAFrameThatComesByteByByte)
{
    const RawPeer peer(m_path);
    for (const char byte : frame(10, 4, "text")) {
        peer.send(QByteArray(1, byte));
        QCoreApplication::processEvents();
    }
    peer.expectAnswer();
    ASSERT_EQ(m_heard.size(), 1U);
    EXPECT_EQ(m_heard.front().second, "text");
}

TEST_F(LocalMessages, areHeardThroughPeersThatNeverFinish)
{
    // Three times as many as may wait at once: the oldest give way.
    std::vector<std::unique_ptr<RawPeer>> silent;
    for (int i = 0; i < 48; ++i) {
        silent.push_back(std::make_unique<RawPeer>(m_path));
        ASSERT_TRUE(silent.back()->isConnected());
        silent.back()->send(frame(10, 100, "never complete"));
        QCoreApplication::processEvents();
    }
    expectStillServing();
    silent.front()->expectEnd();
    EXPECT_EQ(silent.back()->look(), RawPeer::Sees::Nothing);
}

TEST_F(LocalMessages, arriveFromManySendersAtOnce)
{
    // 8 senders, 25 messages each: catches a lost or doubled message.
    std::atomic<int> sent = 0;
    std::atomic<int> done = 0;
    std::vector<std::thread> senders;
    for (int t = 0; t < 8; ++t) {
        senders.emplace_back([&, t] {
            for (int i = 0; i < 25; ++i) {
                const QByteArray text = QByteArray::number(t * 100 + i);
                sent += sendLocalMessage(m_path, CopyDataId::CapturedText, text, kLong) ? 1 : 0;
            }
            ++done;
        });
    }
    waitUntil("all senders", [&done] { return done == 8; });
    for (std::thread &sender : senders) {
        sender.join();
    }
    EXPECT_EQ(sent, 200);
    std::sort(m_heard.begin(), m_heard.end());
    EXPECT_EQ(m_heard.size(), 200U);
    EXPECT_EQ(std::unique(m_heard.begin(), m_heard.end()), m_heard.end());
}

TEST_F(LocalMessages, arriveWhileTheHandlerRunsALoopOfItsOwn)
{
    // A handler that opens a dialog.
    const RawPeer later(m_path);
    m_onMessage = [&] {
        m_onMessage = nullptr;
        later.send(frame(10, 5, "later"));
        waitUntil("the later message", [this] { return m_heard.size() == 2; });
    };
    EXPECT_TRUE(send(CopyDataId::CapturedText, "first"));
    later.expectAnswer();
}

TEST_F(LocalMessages, mayDestroyTheirServerFromTheHandler)
{
    m_onMessage = [this] { m_server.reset(); };
    EXPECT_TRUE(send(CopyDataId::CapturedText, "the last"));
    EXPECT_FALSE(QFileInfo::exists(m_path));
}

TEST_F(LocalMessages, leaveNothingWhenServersComeAndGo)
{
    // 2,000 servers, each with an unfinished peer: catches a watched descriptor that is closed.
    for (int i = 0; i < 2'000; ++i) {
        const RawPeer peer(m_path);
        peer.send("x");
        QCoreApplication::processEvents();
        m_server.reset();
        listen();
    }
    expectStillServing();
}

} // namespace
