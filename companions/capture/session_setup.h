#pragma once

#include "companions/capture/browser_start.h"
#include "companions/capture/devtools_connection.h"
#include "companions/capture/page_report.h"

#include <QJsonObject>
#include <QString>

#include <functional>

namespace tollivar::capture {

/// The first words to a browser: it fetches no file by itself, tells of each page, frame and worker
/// that comes into being, holds it until prepareSession() lets it run, and opens an empty page.
/// `onAgent` gets what it calls itself to servers.
void openEmptyPage(DevToolsConnection &connection, BrowserFace face,
                   std::function<void(const QString &agent)> onAgent);

/// A new session, as "Target.attachedToTarget" tells of it.
struct NewSession {
    QString session;
    QString kind;  ///< "page", "iframe" or a kind of worker
    QString agent; ///< what it shall call itself; empty: as it likes
    PageScript script = PageScript::Plays;
};

/// Makes a session tell what it fetches and what its document plays, then lets it run. `onReady` is
/// called once nothing that it fetches goes unseen.
void prepareSession(DevToolsConnection &connection, const NewSession &created,
                    DevToolsConnection::ReplyHandler onReady = {});

/// Asks what cookies the browser would send to an address; `onAnswer` gets them as the header line's
/// value, empty when it has none.
void askForCookies(DevToolsConnection &connection, const QString &session, const QString &address,
                   std::function<void(const QString &cookies)> onAnswer);

} // namespace tollivar::capture
