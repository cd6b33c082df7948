#pragma once

#include "platform/auto_reset_event.h"
#include "platform/worker_thread.h"

#include <QObject>
#include <QString>

#include <memory>

namespace tollivar::app {

/// A capture browser whose output is read: what a person chooses there arrives without a question.
///
/// Threads: the main thread; the output is read on one of its own.
/// Owns:    browser and thread; the destructor ends both.
class CaptureBrowser : public QObject {
    Q_OBJECT

public:
    explicit CaptureBrowser(int browserVersion);
    ~CaptureBrowser() override;
    CaptureBrowser(const CaptureBrowser &) = delete;
    CaptureBrowser &operator=(const CaptureBrowser &) = delete;

Q_SIGNALS:
    /// One record, as the capture browser wrote it.
    void captured(const QString &record);
    void ended();

private:
    std::shared_ptr<platform::AutoResetEvent> m_stop;
    platform::WorkerThread m_thread;
};

} // namespace tollivar::app
