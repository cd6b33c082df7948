#include "companions/capture/browsing_watch.h"

#include "companions/capture/session_setup.h"

#include <algorithm>
#include <set>
#include <utility>

namespace tollivar::capture {

namespace {

constexpr std::chrono::milliseconds kStep{50};
/// Beyond these nobody looks; what comes later, or lies longest ago, is left out.
constexpr std::size_t kMaximumPages = 200;
constexpr std::size_t kMaximumLeft = 1'000;
constexpr std::size_t kMaximumCookieQuestions = 100;

/// True when the event is a page's request for its next document.
bool isNavigation(const DevToolsMessage &event, const QString &target)
{
    return event.method == u"Network.requestWillBeSent" &&
           event.content[u"type"].toString() == u"Document" &&
           event.content[u"frameId"].toString() == target &&
           !event.content.contains(u"redirectResponse");
}

} // namespace

BrowsingWatch::BrowsingWatch(platform::GuardedChild &browser, QString address)
    : m_connection(browser, [this](const DevToolsMessage &event) { takeEvent(event); })
    , m_firstAddress(std::move(address))
{
    openEmptyPage(m_connection, BrowserFace::Shown,
                  [this](const QString &agent) { m_agent = agent; });
}

bool BrowsingWatch::step()
{
    const bool isAlive = m_connection.pump(kStep);
    return isAlive && !(m_hadPage && m_pages.empty());
}

bool BrowsingWatch::takeNews()
{
    return std::exchange(m_hasNews, false);
}

void BrowsingWatch::takeEvent(const DevToolsMessage &event)
{
    if (event.method == u"Target.attachedToTarget") {
        takeTarget(event);
        return;
    }
    if (event.method == u"Target.detachedFromTarget") {
        dropSession(event.content[u"sessionId"].toString());
        return;
    }
    const auto root = m_roots.find(event.session);
    const auto page = root == m_roots.end() ? m_pages.end() : m_pages.find(root->second);
    if (page == m_pages.end()) {
        return;
    }
    if (event.method == u"Runtime.bindingCalled") {
        takeReport(page->second, event.content[u"payload"].toString());
    } else if (event.method.startsWith(u"Network.")) {
        takeNetwork(page->first, page->second, event);
    }
}

void BrowsingWatch::takeTarget(const DevToolsMessage &event)
{
    const QString session = event.content[u"sessionId"].toString();
    const QJsonObject target = event.content[u"targetInfo"].toObject();
    const QString kind = target[u"type"].toString();
    const bool isPage = kind == u"page" && event.session.isEmpty();
    if (isPage && m_pages.size() < kMaximumPages) {
        Page page;
        page.target = target[u"targetId"].toString();
        page.since = ++m_count;
        m_pages.emplace(session, std::move(page));
        m_roots.emplace(session, session);
        m_hadPage = true;
    } else if (const auto parent = m_roots.find(event.session); parent != m_roots.end()) {
        m_roots.emplace(session, parent->second);
    }
    // The first request of a page would go unseen otherwise.
    const QString first = isPage ? std::exchange(m_firstAddress, {}) : QString();
    prepareSession(m_connection,
                   {.session = session, .kind = kind, .agent = {}, .script = PageScript::Watches},
                   [this, session, first](const QJsonObject & /*result*/) {
                       if (!first.isEmpty()) {
                           m_connection.send(QStringLiteral("Page.navigate"),
                                             {{QStringLiteral("url"), first}}, session);
                       }
                   });
}

void BrowsingWatch::dropSession(const QString &session)
{
    m_roots.erase(session);
    if (const auto page = m_pages.find(session); page != m_pages.end()) {
        leave(page->second);
        m_pages.erase(page);
        std::erase_if(m_roots, [&session](const auto &entry) { return entry.second == session; });
    }
}

void BrowsingWatch::leave(Page &page)
{
    const auto found = mediaOf(page);
    m_left.insert(m_left.begin(), found.begin(), found.end());
    m_left.resize(std::min(m_left.size(), kMaximumLeft));
    Page next;
    next.target = page.target;
    next.since = ++m_count;
    page = std::move(next);
}

void BrowsingWatch::takeReport(Page &page, const QString &text)
{
    const auto report = parsePageReport(text);
    if (!report) {
        return;
    }
    if (report->isWholePage) {
        m_hasNews = m_hasNews || !page.isReported || page.title != report->title;
        page.isReported = true;
        page.title = report->title;
        page.address = report->address;
    }
    // What a page only points to is for a person to follow.
    m_hasNews = page.findings.takePlayed(report->played) || m_hasNews;
}

void BrowsingWatch::takeNetwork(const QString &root, Page &page, const DevToolsMessage &event)
{
    if (event.session == root && isNavigation(event, page.target)) {
        leave(page);
        page.address = event.content[u"request"][u"url"].toString();
    }
    if (page.findings.takeNetwork(event) == PageFindings::News::Candidate) {
        m_hasNews = true;
        askForMissingCookies(root, page);
    }
}

void BrowsingWatch::askForMissingCookies(const QString &root, Page &page)
{
    for (const QString &address : page.findings.takeCookieQuestions(kMaximumCookieQuestions)) {
        askForCookies(m_connection, root, address, [this, root, address](const QString &cookies) {
            if (const auto asking = m_pages.find(root); asking != m_pages.end()) {
                asking->second.findings.setCookies(address, cookies);
                m_hasNews = true;
            }
        });
    }
}

std::vector<MediaFound> BrowsingWatch::mediaOf(const Page &page) const
{
    if (!page.isReported) {
        return {};
    }
    auto media = rankMedia(page.findings.media(page.title), MediaPreference::Video);
    for (MediaFound &medium : media) {
        medium.page = page.address;
        medium.agent = medium.agent.isEmpty() ? m_agent : medium.agent;
    }
    return media;
}

std::vector<MediaFound> BrowsingWatch::media() const
{
    std::vector<const Page *> newestFirst;
    for (const auto &[session, page] : m_pages) {
        newestFirst.push_back(&page);
    }
    std::sort(newestFirst.begin(), newestFirst.end(),
              [](const Page *left, const Page *right) { return left->since > right->since; });
    std::vector<MediaFound> all;
    std::set<QString> known;
    const auto add = [&](const std::vector<MediaFound> &media) {
        for (const MediaFound &medium : media) {
            if (known.insert(medium.address).second) {
                all.push_back(medium);
            }
        }
    };
    for (const Page *page : newestFirst) {
        add(mediaOf(*page));
    }
    add(m_left);
    return all;
}

} // namespace tollivar::capture
