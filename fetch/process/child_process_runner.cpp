#include "fetch/process/child_process_runner.h"

#include "platform/text_encoding.h"

#include <array>

namespace tollivar::fetch {

namespace {

constexpr std::size_t kChunkSize = 2'047;

} // namespace

ChildProcessRunner::ChildProcessRunner() = default;

ChildProcessRunner::~ChildProcessRunner() = default;

bool ChildProcessRunner::start(const QString &commandLine, platform::OrphanEnd whenOrphaned)
{
    auto child = platform::ChildProcess::start(commandLine, {.whenOrphaned = whenOrphaned});
    if (!child) {
        qWarning("a helper could not be started: %s", qPrintable(child.error().text));
        return false;
    }
    m_child = std::move(*child);
    m_wasKilled = false;
    return true;
}

bool ChildProcessRunner::read(QString &chunk)
{
    if (!m_child) {
        return false;
    }
    std::array<std::byte, kChunkSize> buffer{};
    const std::size_t count = m_child->read(buffer);
    if (count == 0) {
        return false;
    }
    chunk =
        platform::decodeUtf8OrLatin1(QByteArrayView(buffer.data(), static_cast<qsizetype>(count)));
    return true;
}

bool ChildProcessRunner::readAll(QString &text)
{
    QString chunk;
    for (;;) {
        if (read(chunk)) {
            text += chunk;
        } else if (hasEnded()) {
            return true;
        }
    }
}

bool ChildProcessRunner::hasEnded()
{
    return !m_child || m_child->hasEnded();
}

bool ChildProcessRunner::exitCode(std::uint32_t &code)
{
    const auto ended = m_child ? m_child->exitCode() : std::nullopt;
    if (ended) {
        code = m_wasKilled ? 0 : static_cast<std::uint32_t>(*ended);
    }
    return ended.has_value();
}

void ChildProcessRunner::kill()
{
    if (m_child) {
        m_wasKilled = m_wasKilled || !m_child->hasEnded();
        m_child->kill();
    }
}

void ChildProcessRunner::close()
{
    m_child.reset();
}

} // namespace tollivar::fetch
