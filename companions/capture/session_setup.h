#pragma once

#include "companions/capture/devtools_connection.h"
#include "companions/capture/page_report.h"

#include <QJsonObject>
#include <QString>

namespace tollivar::capture {

/// Makes the browser, or a session of it, tell of each page, frame and worker that comes into being,
/// and hold it until prepareSession() lets it run.
void attachToTargets(DevToolsConnection &connection, const QString &session = {});

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

/// The header line's value that the browser would make of the cookies in the answer to
/// "Network.getCookies".
[[nodiscard]] QString cookieHeader(const QJsonObject &answer);

} // namespace tollivar::capture
