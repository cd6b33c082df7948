#include "companions/capture/page_watch.h"

#include "companions/capture/media_rank.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace tollivar::capture {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds kStep{50};
/// How often media elements are set playing and asked what they play.
constexpr milliseconds kPlayInterval{250};
/// After the last answer, before what was found counts as all of it.
constexpr milliseconds kSettle{250};
/// After the page has loaded, in which a script may still begin to fetch.
constexpr milliseconds kGraceWithSound{2'500};
constexpr milliseconds kGraceWithNothing{4'000};
/// A page that shows nothing to play by then has nothing.
constexpr milliseconds kLongestWithNothing{9'000};

/// Sets every media element playing, without a sound, and tells what they play.
constexpr QLatin1StringView kPlayScript(R"js((() => {
  const found = [];
  for (const media of document.querySelectorAll('video,audio')) {
    media.muted = true;
    const begun = media.play();
    if (begun) begun.catch(() => {});
    if (media.currentSrc) found.push(media.currentSrc);
  }
  return JSON.stringify({title: document.title, playing: found});
})())js");

QJsonObject attachFilter()
{
    QJsonArray filter;
    for (const QString &type :
         {QStringLiteral("page"), QStringLiteral("iframe"), QStringLiteral("worker"),
          QStringLiteral("shared_worker"), QStringLiteral("service_worker")}) {
        filter.append(QJsonObject{{QStringLiteral("type"), type}});
    }
    filter.append(QJsonObject{{QStringLiteral("exclude"), true}});
    return {{QStringLiteral("autoAttach"), true},
            {QStringLiteral("waitForDebuggerOnStart"), true},
            {QStringLiteral("flatten"), true},
            {QStringLiteral("filter"), filter}};
}

} // namespace

PageWatch::PageWatch(platform::GuardedChild &browser, FindRequest request)
    : m_request(std::move(request))
    , m_connection(browser, [this](const DevToolsMessage &event) { takeEvent(event); })
    , m_start(Clock::now())
    , m_lastPlay(m_start)
    , m_lastAnswer(m_start)
{
    begin();
}

void PageWatch::begin()
{
    m_connection.send(QStringLiteral("Browser.getVersion"), {}, {},
                      [this](const QJsonObject &result) {
                          // Servers turn away a browser that says it has no window.
                          m_agent = result[u"userAgent"].toString().replace(
                              QLatin1StringView("HeadlessChrome"), QLatin1StringView("Chrome"));
                      });
    m_connection.send(QStringLiteral("Target.setAutoAttach"), attachFilter());
    m_connection.send(QStringLiteral("Target.createTarget"),
                      {{QStringLiteral("url"), QStringLiteral("about:blank")}});
}

bool PageWatch::step()
{
    if (!m_connection.pump(kStep) || Clock::now() > m_request.deadline) {
        return false;
    }
    if (m_isOpen && Clock::now() - m_lastPlay > kPlayInterval) {
        m_lastPlay = Clock::now();
        playEverything();
    }
    return !isDone();
}

void PageWatch::takeEvent(const DevToolsMessage &event)
{
    if (event.method == u"Target.attachedToTarget") {
        attach(event.content[u"sessionId"].toString(),
               event.content[u"targetInfo"][u"type"].toString());
    } else if (event.method == u"Target.detachedFromTarget") {
        m_documents.remove(event.content[u"sessionId"].toString());
    } else if (event.method == u"Page.loadEventFired" && event.session == m_pageSession &&
               m_isOpen) {
        m_loaded = Clock::now();
        m_lastPlay = {};
    } else if (m_network.take(event)) {
        m_lastAnswer = Clock::now();
    }
}

void PageWatch::attach(const QString &session, const QString &kind)
{
    const bool hasDocument = kind == u"page" || kind == u"iframe";
    const bool isPage = kind == u"page" && m_pageSession.isEmpty();
    if (isPage) {
        m_pageSession = session;
    }
    if (hasDocument) {
        m_documents.insert(session);
        m_connection.send(QStringLiteral("Page.enable"), {}, session);
    }
    m_connection.send(QStringLiteral("Network.setUserAgentOverride"),
                      {{QStringLiteral("userAgent"), m_agent}}, session);
    m_connection.send(QStringLiteral("Target.setAutoAttach"), attachFilter(), session);
    // Requests before this reply would go unseen, so the page is opened by it.
    m_connection.send(QStringLiteral("Network.enable"), {}, session,
                      [this, isPage](const QJsonObject & /*result*/) {
                          if (isPage) {
                              openPage();
                          }
                      });
    m_connection.send(QStringLiteral("Runtime.runIfWaitingForDebugger"), {}, session);
}

void PageWatch::openPage()
{
    m_isOpen = true;
    m_start = Clock::now();
    m_connection.send(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), m_request.address}},
                      m_pageSession);
}

void PageWatch::playEverything()
{
    for (const QString &session : std::as_const(m_documents)) {
        const bool isPage = session == m_pageSession;
        m_connection.send(QStringLiteral("Runtime.evaluate"),
                          {{QStringLiteral("expression"), kPlayScript},
                           {QStringLiteral("returnByValue"), true},
                           {QStringLiteral("userGesture"), true}},
                          session, [this, isPage](const QJsonObject &result) {
                              const QJsonObject told =
                                  QJsonDocument::fromJson(
                                      result[u"result"][u"value"].toString().toUtf8())
                                      .object();
                              if (isPage) {
                                  m_title = told[u"title"].toString();
                              }
                              takePlayed(told);
                          });
    }
}

void PageWatch::takePlayed(const QJsonObject &result)
{
    for (const auto &address : result[u"playing"].toArray()) {
        if (const QString text = address.toString(); !m_playing.contains(text)) {
            m_playing.append(text);
        }
    }
}

bool PageWatch::isDone() const
{
    if (!m_isOpen) {
        return false;
    }
    const auto now = Clock::now();
    const auto found = media();
    if (isSatisfying(found)) {
        // The title is asked for together with what plays.
        return now - m_lastAnswer > kSettle && !m_title.isNull();
    }
    if (now - m_start > kLongestWithNothing) {
        return true;
    }
    return m_loaded && now - *m_loaded > (found.empty() ? kGraceWithNothing : kGraceWithSound) &&
           now - m_lastAnswer > kSettle;
}

std::vector<MediaFound> PageWatch::media() const
{
    return rankMedia(m_network.answered(), m_playing, m_title, m_request.preference);
}

} // namespace tollivar::capture
