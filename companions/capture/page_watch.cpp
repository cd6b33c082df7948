#include "companions/capture/page_watch.h"

#include "companions/capture/session_setup.h"

#include <QJsonArray>

#include <algorithm>

namespace tollivar::capture {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kStep{25};
/// A browser that has shown no page by then never will.
constexpr milliseconds kLongestStart{15'000};
constexpr milliseconds kLongestForCookies{500};
/// Beyond these a page is not honest; what comes later is left out.
constexpr std::size_t kMaximumPlayed = 500;
constexpr std::size_t kMaximumOffered = 500;
/// The best ones are asked for first, and only they matter.
constexpr int kMaximumCookieQuestions = 20;

} // namespace

PageWatch::PageWatch(platform::GuardedChild &browser, FindRequest request)
    : m_request(std::move(request))
    , m_connection(browser, [this](const DevToolsMessage &event) { takeEvent(event); })
    , m_stateSince(Clock::now())
{
    prepareBrowser();
}

void PageWatch::prepareBrowser()
{
    m_connection.send(QStringLiteral("Browser.getVersion"), {}, {},
                      [this](const QJsonObject &result) {
                          // Servers turn away a browser that says it has no window.
                          m_agent = result[u"userAgent"].toString().replace(
                              QLatin1StringView("HeadlessChrome"), QLatin1StringView("Chrome"));
                      });
    m_connection.send(QStringLiteral("Browser.setDownloadBehavior"),
                      {{QStringLiteral("behavior"), QStringLiteral("deny")}});
    attachToTargets(m_connection);
    m_connection.send(QStringLiteral("Target.createTarget"),
                      {{QStringLiteral("url"), QStringLiteral("about:blank")}});
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
        m_progress.isBusy = m_network.isBusy();
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
        switch (m_network.take(event)) {
        case NetworkWatch::News::Candidate:
            noteMediaChange();
            [[fallthrough]];
        case NetworkWatch::News::Traffic:
            m_progress.lastTraffic = Clock::now();
            break;
        case NetworkWatch::News::None:
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
    bool isNews = false;
    for (const PlayedMedium &medium : report->played) {
        const auto known =
            std::find_if(m_played.begin(), m_played.end(), [&medium](const PlayedMedium &other) {
                return other.address == medium.address;
            });
        if (known != m_played.end()) {
            known->area = std::max(known->area, medium.area);
        } else if (m_played.size() < kMaximumPlayed) {
            m_played.push_back(medium);
            isNews = true;
        }
    }
    for (const QString &address : report->offered) {
        const bool isKnown =
            std::any_of(m_offered.begin(), m_offered.end(),
                        [&address](const auto &other) { return other.address == address; });
        if (!isKnown && m_offered.size() < kMaximumOffered) {
            m_offered.push_back({.namedAddress = address,
                                 .address = address,
                                 .mediaType = {},
                                 .sent = {.cookies = {},
                                          .agent = m_agent,
                                          .referer = refererFor(report->address, address)}});
            isNews = true;
        }
    }
    if (isNews) {
        noteMediaChange();
    }
}

void PageWatch::finish()
{
    if (m_state == State::Watching) {
        enter(State::AskingCookies);
        askForCookies();
    }
}

void PageWatch::askForCookies()
{
    int left = kMaximumCookieQuestions;
    const PageMedia page = pageMedia();
    for (const auto *requests : {&page.answered, &page.offered}) {
        for (const WatchedRequest &request : *requests) {
            if (request.isSentKnown || left-- <= 0) {
                continue;
            }
            ++m_cookiesAwaited;
            const QString address = request.address;
            m_connection.send(QStringLiteral("Network.getCookies"),
                              {{QStringLiteral("urls"), QJsonArray{address}}}, m_pageSession,
                              [this, address](const QJsonObject &result) {
                                  --m_cookiesAwaited;
                                  m_cookies[address] = cookieHeader(result);
                              });
        }
    }
}

void PageWatch::noteMediaChange()
{
    m_progress.changed = Clock::now();
    if (!m_progress.found && isSatisfying(pageMedia(), m_request.preference)) {
        m_progress.found = m_progress.changed;
    }
}

void PageWatch::enter(State state)
{
    m_state = state;
    m_stateSince = Clock::now();
}

PageMedia PageWatch::pageMedia() const
{
    PageMedia page{.answered = m_network.candidates(),
                   .played = m_played,
                   .offered = m_offered,
                   .title = m_title};
    for (auto *requests : {&page.answered, &page.offered}) {
        for (WatchedRequest &request : *requests) {
            if (const auto asked = m_cookies.find(request.address);
                asked != m_cookies.end() && !request.isSentKnown) {
                request.sent.cookies = asked->second;
            }
        }
    }
    return page;
}

std::vector<MediaFound> PageWatch::media() const
{
    return rankMedia(pageMedia(), m_request.preference);
}

} // namespace tollivar::capture
