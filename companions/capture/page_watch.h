#pragma once

#include "companions/capture/devtools_connection.h"
#include "companions/capture/finish_rule.h"
#include "companions/capture/media_found.h"
#include "companions/capture/page_findings.h"

#include <chrono>
#include <optional>
#include <vector>

namespace tollivar::capture {

/// Loads one page in a browser and gathers what it plays, until that is known well enough.
///
/// Threads: one thread, that calls step() again and again.
/// Owns:    nothing; the child is borrowed.
/// States:  Starting, until the browser has a page; Watching; AskingCookies, for media of which
///          it is not known what to send; Over.
class PageWatch {
public:
    PageWatch(platform::GuardedChild &browser, FindRequest request);

    /// Waits a moment for the browser and takes what it says. False when nothing more is to come:
    /// the media are known, the page has none, or the browser is gone.
    [[nodiscard]] bool step();

    /// What was found so far, best first.
    [[nodiscard]] std::vector<MediaFound> media() const;
    /// False when the browser never came as far as showing the page.
    [[nodiscard]] bool hasShownPage() const { return m_progress.answered.has_value(); }

private:
    using Clock = std::chrono::steady_clock;
    enum class State { Starting, Watching, AskingCookies, Over };

    void takeEvent(const DevToolsMessage &event);
    void takeTarget(const QJsonObject &event);
    void takeAnswer(const DevToolsMessage &event);
    void takeReport(const QString &text);
    void takeNavigation(const QJsonObject &result);
    void openPage();
    void askForMissingCookies();
    void finish();
    void noteMediaChange();
    void enter(State state);

    FindRequest m_request;
    DevToolsConnection m_connection;
    PageFindings m_findings;
    WatchProgress m_progress;
    State m_state = State::Starting;
    Clock::time_point m_stateSince;
    QString m_agent;
    QString m_pageSession;
    QString m_pageTarget;
    QString m_title;
    int m_cookiesAwaited = 0;
};

} // namespace tollivar::capture
