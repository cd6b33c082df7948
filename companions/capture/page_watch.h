#pragma once

#include "companions/capture/devtools_connection.h"
#include "companions/capture/media_found.h"
#include "companions/capture/network_watch.h"

#include <QSet>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

namespace tollivar::capture {

/// Loads one page in a browser and gathers what it plays, until that is known well enough.
///
/// Threads: one thread, that calls step() again and again.
/// Owns:    nothing; the child is borrowed.
class PageWatch {
public:
    PageWatch(platform::GuardedChild &browser, FindRequest request);

    /// Waits a moment for the browser and takes what it says. False when nothing more is to come:
    /// the media are known, the page has none, or the browser is gone.
    [[nodiscard]] bool step();

    /// What was found so far, best first.
    [[nodiscard]] std::vector<MediaFound> media() const;

private:
    using Clock = std::chrono::steady_clock;

    void begin();
    void takeEvent(const DevToolsMessage &event);
    void attach(const QString &session, const QString &kind);
    void openPage();
    void playEverything();
    void takePlayed(const QJsonObject &result);
    [[nodiscard]] bool isDone() const;

    FindRequest m_request;
    DevToolsConnection m_connection;
    NetworkWatch m_network;
    QString m_agent;
    QString m_pageSession;
    QSet<QString> m_documents; ///< sessions that have a document: the page and its frames
    QStringList m_playing;
    QString m_title;
    Clock::time_point m_start;
    Clock::time_point m_lastPlay;
    Clock::time_point m_lastAnswer;
    std::optional<Clock::time_point> m_loaded;
    bool m_isOpen = false;
};

} // namespace tollivar::capture
