#include "companions/capture/page_report.h"

#include "platform/web_address.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>

namespace tollivar::capture {

namespace {

constexpr qsizetype kMaximumTitle = 1'000;
/// More than this of one kind is not reported, nor taken.
constexpr qsizetype kMaximumItems = 200;

/// Runs in a world of its own: what the page puts in the place of the browser's functions does not
/// reach it. A page may still hide elements from it, which only makes it see less.
constexpr QLatin1StringView kScript(R"js((() => {
  'use strict';
  const report = globalThis.tollivarReport;
  const mediaEnding = /\.(mp4|webm|flv|mkv|mov|m4v|ogv|avi|wmv|mpe?g|3gp|asf|swf)$/i;
  const playWord = /(^|[^a-z])play([^a-z]|$)/i;
  const plays = @PLAYS@;
  const maximumItems = 200;
  const maximumAddress = 16384;
  const attempts = new WeakMap();
  const clicked = new WeakSet();
  let clicks = 0;
  let rounds = 0;
  let said = '';

  const isFetched = (address) => /^https?:/.test(address) && address.length <= maximumAddress;

  // The document and the shadow trees in it, where players like to hide their element.
  const allTrees = () => {
    const trees = [document];
    for (let i = 0; i < trees.length && trees.length < maximumItems; ++i) {
      for (const element of trees[i].querySelectorAll('*')) {
        if (element.shadowRoot) trees.push(element.shadowRoot);
      }
    }
    return trees;
  };

  // A page may pause what we play; insisting for ever would only fight it.
  const play = (media) => {
    const tries = attempts.get(media) || 0;
    if (!media.paused || media.ended || tries >= 4) return;
    attempts.set(media, tries + 1);
    media.muted = true;
    const begun = media.play();
    if (begun) begun.catch(() => {});
  };

  // Some players make their element only when somebody presses their button.
  const pressPlay = () => {
    if (clicks >= 3 || document.readyState !== 'complete') return;
    for (const button of document.querySelectorAll('button,[role=button],[class*=play i]')) {
      const words = [button.getAttribute('aria-label'), button.title, button.id,
                     button.getAttribute('class'), button.textContent.slice(0, 30)].join(' ');
      if (clicked.has(button) || button.closest('a[href],form') || !playWord.test(words)) continue;
      clicked.add(button);
      ++clicks;
      button.click();
      return;
    }
  };

  const pointedTo = () => {
    const offered = new Set();
    for (const element of document.querySelectorAll('a[href],embed[src],object[data]')) {
      if (offered.size >= maximumItems) break;
      try {
        const address = new URL(element.href || element.src || element.data, document.baseURI);
        if (isFetched(address.href) && mediaEnding.test(address.pathname)) offered.add(address.href);
      } catch {}
    }
    return [...offered];
  };

  const look = () => {
    const played = [];
    let elements = 0;
    for (const tree of allTrees()) {
      for (const media of tree.querySelectorAll('video,audio')) {
        ++elements;
        if (plays) play(media);
        if (isFetched(media.currentSrc) && played.length < maximumItems) {
          played.push({address: media.currentSrc, area: media.clientWidth * media.clientHeight});
        }
      }
    }
    if (plays && elements === 0 && ++rounds > 4) pressPlay();
    const text = JSON.stringify({address: location.href.slice(0, maximumAddress),
                                 isWholePage: window === window.top,
                                 title: String(document.title).slice(0, 1000),
                                 played, offered: pointedTo()});
    if (text !== said) {
      said = text;
      report(text);
    }
  };

  const lookSafely = () => { try { look(); } catch {} };
  document.addEventListener('DOMContentLoaded', lookSafely);
  window.addEventListener('load', lookSafely);
  document.addEventListener('loadstart', lookSafely, true);
  setInterval(lookSafely, 200);
})())js");

} // namespace

QString pageScript(PageScript script)
{
    const QString plays =
        script == PageScript::Plays ? QStringLiteral("true") : QStringLiteral("false");
    return QString(kScript).replace(QLatin1StringView("@PLAYS@"), plays);
}

std::optional<PageReport> parsePageReport(const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    PageReport report{.address = object[u"address"].toString().left(platform::kMaximumWebAddress),
                      .title = object[u"title"].toString().left(kMaximumTitle).simplified(),
                      .isWholePage = object[u"isWholePage"].toBool(),
                      .played = {},
                      .offered = {}};
    const QJsonArray played = object[u"played"].toArray();
    for (qsizetype i = 0; i < std::min(played.size(), kMaximumItems); ++i) {
        const QString address = played[i][u"address"].toString();
        if (platform::isWebAddress(address)) {
            report.played.push_back({address, std::max(0.0, played[i][u"area"].toDouble())});
        }
    }
    const QJsonArray offered = object[u"offered"].toArray();
    for (qsizetype i = 0; i < std::min(offered.size(), kMaximumItems); ++i) {
        if (const QString address = offered[i].toString(); platform::isWebAddress(address)) {
            report.offered.push_back(address);
        }
    }
    return report;
}

QString refererFor(const QString &page, const QString &address)
{
    const QUrl from(page);
    const QUrl to(address);
    if (!platform::isWebAddress(page) || (from.scheme() == u"https" && to.scheme() == u"http")) {
        return {};
    }
    const bool isSameOrigin =
        from.scheme() == to.scheme() && from.host() == to.host() && from.port() == to.port();
    const QUrl::FormattingOptions withheld = QUrl::RemoveFragment | QUrl::RemoveUserInfo;
    if (isSameOrigin) {
        return from.toString(withheld | QUrl::FullyEncoded);
    }
    return from.toString(withheld | QUrl::RemovePath | QUrl::RemoveQuery) + QLatin1Char('/');
}

} // namespace tollivar::capture
