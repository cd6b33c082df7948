#include "companions/capture/page_watch.h"

#include "companions/capture/session_setup.h"

namespace tollivar::capture {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kStep{25};
/// A browser that has shown no page by then never will.
constexpr milliseconds kLongestStart{15'000};
constexpr milliseconds kLongestForCookies{500};
/// The best ones are asked for first, and only they matter.
constexpr std::size_t kMaximumCookieQuestions = 20;

} // namespace

PageWatch::PageWatch(platform::GuardedChild &browser, FindRequest request)
    : m_request(std::move(request))
    , m_connection(browser, [this](const DevToolsMessage &event) { takeEvent(event); })
    , m_stateSince(Clock::now())
{
    openEmptyPage(m_connection, BrowserFace::Hidden,
                  [this](const QString &agent) { m_agent = agent; });
}

bool PageWatch::step()
{
    const bool isAlive = m_connection.pump(kStep);
    const auto now = Clock::now();
    if (!isAlive || now > m_request.deadline) {
        enter(State::Over);
    }
    switch (m_state) {
    case State::Starting:
        if (now - m_stateSince > kLongestStart) {
            enter(State::Over);
        }
        break;
    case State::Watching:
        m_progress.isBusy = m_findings.isBusy();
        if (isFinished(m_progress, now)) {
            finish();
        }
        break;
    case State::AskingCookies:
        if (m_cookiesAwaited == 0 || now - m_stateSince > kLongestForCookies) {
            enter(State::Over);
        }
        break;
    case State::Over:
        break;
    }
    return m_state != State::Over;
}

void PageWatch::takeEvent(const DevToolsMessage &event)
{
    const bool isOfPage = event.session == m_pageSession && !m_pageSession.isEmpty();
    if (event.method == u"Target.attachedToTarget") {
        takeTarget(event.content);
    } else if (event.method == u"Runtime.bindingCalled") {
        takeReport(event.content[u"payload"].toString());
    } else if (event.method == u"Page.javascriptDialogOpening") {
        // The page waits until somebody answers; there is nobody else.
        m_connection.send(QStringLiteral("Page.handleJavaScriptDialog"),
                          {{QStringLiteral("accept"), true}}, event.session);
    } else if (event.method == u"Page.loadEventFired" && isOfPage && m_state != State::Starting) {
        m_progress.loaded = Clock::now();
    } else if (event.method == u"Inspector.targetCrashed" && isOfPage) {
        finish();
    } else if (event.method.startsWith(u"Network.")) {
        takeAnswer(event);
        switch (m_findings.takeNetwork(event)) {
        case PageFindings::News::Candidate:
            noteMediaChange();
            [[fallthrough]];
        case PageFindings::News::Traffic:
            m_progress.lastTraffic = Clock::now();
            break;
        case PageFindings::News::None:
            break;
        }
    }
}

void PageWatch::takeTarget(const QJsonObject &event)
{
    const QString session = event[u"sessionId"].toString();
    const QString kind = event[u"targetInfo"][u"type"].toString();
    const QString target = event[u"targetInfo"][u"targetId"].toString();
    if (kind == u"page") {
        if (!m_pageSession.isEmpty()) {
            // A window that the page opens is never the one that was asked for. Both may share a
            // process, which waits as long as the window does.
            m_connection.send(QStringLiteral("Runtime.runIfWaitingForDebugger"), {}, session);
            m_connection.send(QStringLiteral("Target.closeTarget"),
                              {{QStringLiteral("targetId"), target}});
            return;
        }
        m_pageSession = session;
        m_pageTarget = target;
    }
    // Requests before this reply would go unseen, so the page is opened by it.
    prepareSession(m_connection, {.session = session, .kind = kind, .agent = m_agent},
                   [this, session](const QJsonObject & /*result*/) {
                       if (session == m_pageSession && m_state == State::Starting) {
                           openPage();
                       }
                   });
}

void PageWatch::openPage()
{
    enter(State::Watching);
    m_progress.begun = m_progress.lastTraffic = Clock::now();
    m_connection.send(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), m_request.address}},
                      m_pageSession, [this](const QJsonObject &result) {
                          const bool isShown = result.contains(u"frameId") &&
                                               result[u"errorText"].toString().isEmpty();
                          if (!isShown) {
                              finish();
                          }
                      });
}

void PageWatch::takeAnswer(const DevToolsMessage &event)
{
    const bool isPageItself = event.method == u"Network.responseReceived" &&
                              event.session == m_pageSession &&
                              event.content[u"type"].toString() == u"Document" &&
                              event.content[u"frameId"].toString() == m_pageTarget;
    if (!isPageItself) {
        return;
    }
    if (!m_progress.answered) {
        m_progress.answered = Clock::now();
    }
    // A page may send its visitor on to another one.
    m_progress.loaded.reset();
    m_progress.isTitleKnown = false;
    const int status = event.content[u"response"][u"status"].toInt();
    constexpr int kNotFound = 404;
    constexpr int kGone = 410;
    if (status == kNotFound || status == kGone) {
        // What plays on such a page is not what was asked for.
        enter(State::Over);
    }
}

void PageWatch::takeReport(const QString &text)
{
    const auto report = parsePageReport(text);
    if (!report) {
        return;
    }
    if (report->isWholePage) {
        m_title = report->title;
        m_progress.isTitleKnown = !m_title.isEmpty();
    }
    const bool playsMore = m_findings.takePlayed(report->played);
    const bool offersMore = m_findings.takeOffered(*report, m_agent);
    if (playsMore || offersMore) {
        noteMediaChange();
    }
}

void PageWatch::finish()
{
    if (m_state == State::Watching) {
        enter(State::AskingCookies);
        askForMissingCookies();
    }
}

void PageWatch::askForMissingCookies()
{
    for (const QString &address : m_findings.takeCookieQuestions(kMaximumCookieQuestions)) {
        ++m_cookiesAwaited;
        askForCookies(m_connection, m_pageSession, address,
                      [this, address](const QString &cookies) {
                          --m_cookiesAwaited;
                          m_findings.setCookies(address, cookies);
                      });
    }
}

void PageWatch::noteMediaChange()
{
    m_progress.changed = Clock::now();
    if (!m_progress.found && isSatisfying(m_findings.media(m_title), m_request.preference)) {
        m_progress.found = m_progress.changed;
    }
}

void PageWatch::enter(State state)
{
    m_state = state;
    m_stateSince = Clock::now();
}

std::vector<MediaFound> PageWatch::media() const
{
    return rankMedia(m_findings.media(m_title), m_request.preference);
}

} // namespace tollivar::capture
