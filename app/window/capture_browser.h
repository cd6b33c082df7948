#pragma once

#include "platform/auto_reset_event.h"
#include "platform/worker_thread.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace tollivar::app {

/// Runs a capture browser and hands on what a person chooses there, until the browser has ended or
/// `stop` is set; called on a thread of its own.
using FollowBrowser = std::function<void(
    platform::AutoResetEvent &stop, const std::function<void(const QString &record)> &onRecord)>;

/// The installed one, with the parse mode for that version of the browser engine.
[[nodiscard]] FollowBrowser installedBrowser(int browserVersion);

/// A capture browser whose output is read: what a person chooses there arrives without a question.
///
/// Threads: the main thread; the output is read on one of its own.
/// Owns:    browser and thread; the destructor ends both. It waits for that up to `patience`; a
///          thread that takes longer is let go, and nothing more is heard of it.
class CaptureBrowser : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kPatience{3'000};

    explicit CaptureBrowser(FollowBrowser follow, std::chrono::milliseconds patience = kPatience);
    ~CaptureBrowser() override;
    CaptureBrowser(const CaptureBrowser &) = delete;
    CaptureBrowser &operator=(const CaptureBrowser &) = delete;

Q_SIGNALS:
    /// One record, as the capture browser wrote it.
    void captured(const QString &record);
    /// It was closed, or could not be started; told from the event loop.
    void ended();

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
    platform::WorkerThread m_thread;
    std::chrono::milliseconds m_patience;
};

} // namespace tollivar::app
