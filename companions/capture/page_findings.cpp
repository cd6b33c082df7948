#include "companions/capture/page_findings.h"

#include <algorithm>

namespace tollivar::capture {

namespace {

/// Beyond these a page is not honest; what comes later is left out.
constexpr std::size_t kMaximumPlayed = 500;
constexpr std::size_t kMaximumOffered = 500;

template<typename Known>
auto findByAddress(Known &known, const QString &address)
{
    return std::find_if(known.begin(), known.end(),
                        [&address](const auto &other) { return other.address == address; });
}

} // namespace

bool PageFindings::takePlayed(const std::vector<PlayedMedium> &played)
{
    bool isNews = false;
    for (const PlayedMedium &medium : played) {
        const auto known = findByAddress(m_played, medium.address);
        if (known != m_played.end()) {
            known->area = std::max(known->area, medium.area);
        } else if (m_played.size() < kMaximumPlayed) {
            m_played.push_back(medium);
            isNews = true;
        }
    }
    return isNews;
}

bool PageFindings::takeOffered(const PageReport &report, const QString &agent)
{
    bool isNews = false;
    for (const QString &address : report.offered) {
        if (findByAddress(m_offered, address) == m_offered.end() &&
            m_offered.size() < kMaximumOffered) {
            m_offered.push_back({.namedAddress = address,
                                 .address = address,
                                 .mediaType = {},
                                 .sent = {.cookies = {},
                                          .agent = agent,
                                          .referer = refererFor(report.address, address)}});
            isNews = true;
        }
    }
    return isNews;
}

std::vector<QString> PageFindings::takeCookieQuestions(std::size_t limit)
{
    std::vector<QString> questions;
    const auto add = [&](const std::vector<WatchedRequest> &requests) {
        for (const WatchedRequest &request : requests) {
            if (!request.isSentKnown && m_asked.size() < limit &&
                m_asked.insert(request.address).second) {
                questions.push_back(request.address);
            }
        }
    };
    add(m_network.candidates());
    add(m_offered);
    return questions;
}

void PageFindings::setCookies(const QString &address, const QString &cookies)
{
    m_cookies[address] = cookies;
}

PageMedia PageFindings::media(const QString &title) const
{
    PageMedia page{.answered = m_network.candidates(),
                   .played = m_played,
                   .offered = m_offered,
                   .title = title};
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

} // namespace tollivar::capture
