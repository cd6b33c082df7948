#include "companions/capture/session_setup.h"

#include <QJsonArray>
#include <QStringList>

namespace tollivar::capture {

namespace {

/// The header line's value that the browser would make of the cookies in its answer.
QString cookieHeader(const QJsonObject &answer)
{
    QStringList pairs;
    const QJsonArray cookies = answer[u"cookies"].toArray();
    for (const auto &cookie : cookies) {
        pairs.append(cookie[u"name"].toString() + QLatin1Char('=') + cookie[u"value"].toString());
    }
    return pairs.join(QStringLiteral("; "));
}

/// Makes the browser, or a session of it, tell of its targets and hold them.
void attachToTargets(DevToolsConnection &connection, const QString &session = {})
{
    // Every kind of target that can fetch; all else would only be noise.
    QJsonArray filter;
    for (const QString &type :
         {QStringLiteral("page"), QStringLiteral("iframe"), QStringLiteral("worker"),
          QStringLiteral("shared_worker"), QStringLiteral("service_worker")}) {
        filter.append(QJsonObject{{QStringLiteral("type"), type}});
    }
    filter.append(QJsonObject{{QStringLiteral("exclude"), true}});
    connection.send(QStringLiteral("Target.setAutoAttach"),
                    {{QStringLiteral("autoAttach"), true},
                     {QStringLiteral("waitForDebuggerOnStart"), true},
                     {QStringLiteral("flatten"), true},
                     {QStringLiteral("filter"), filter}},
                    session);
}

} // namespace

void openEmptyPage(DevToolsConnection &connection, BrowserFace face,
                   std::function<void(const QString &agent)> onAgent)
{
    connection.send(QStringLiteral("Browser.getVersion"), {}, {},
                    [tell = std::move(onAgent)](const QJsonObject &result) {
                        // Servers turn away a browser that says it has no window.
                        tell(result[u"userAgent"].toString().replace(
                            QLatin1StringView("HeadlessChrome"), QLatin1StringView("Chrome")));
                    });
    // Fetching files is what the program is there for.
    connection.send(QStringLiteral("Browser.setDownloadBehavior"),
                    {{QStringLiteral("behavior"), QStringLiteral("deny")}});
    attachToTargets(connection);
    connection.send(QStringLiteral("Target.createTarget"),
                    {{QStringLiteral("url"), QStringLiteral("about:blank")},
                     {QStringLiteral("newWindow"), face == BrowserFace::Shown}});
}

void prepareSession(DevToolsConnection &connection, const NewSession &created,
                    DevToolsConnection::ReplyHandler onReady)
{
    const QString &session = created.session;
    if (created.kind == u"page" || created.kind == u"iframe") {
        connection.send(QStringLiteral("Page.enable"), {}, session);
        connection.send(QStringLiteral("Runtime.enable"), {}, session);
        connection.send(QStringLiteral("Runtime.addBinding"),
                        {{QStringLiteral("name"), kReportFunction},
                         {QStringLiteral("executionContextName"), kScriptWorld}},
                        session);
        connection.send(QStringLiteral("Page.addScriptToEvaluateOnNewDocument"),
                        {{QStringLiteral("source"), pageScript(created.script)},
                         {QStringLiteral("worldName"), kScriptWorld}},
                        session);
    }
    if (!created.agent.isEmpty()) {
        connection.send(QStringLiteral("Network.setUserAgentOverride"),
                        {{QStringLiteral("userAgent"), created.agent}}, session);
    }
    attachToTargets(connection, session);
    connection.send(QStringLiteral("Network.enable"), {}, session, std::move(onReady));
    connection.send(QStringLiteral("Runtime.runIfWaitingForDebugger"), {}, session);
}

void askForCookies(DevToolsConnection &connection, const QString &session, const QString &address,
                   std::function<void(const QString &cookies)> onAnswer)
{
    connection.send(
        QStringLiteral("Network.getCookies"), {{QStringLiteral("urls"), QJsonArray{address}}},
        session,
        [tell = std::move(onAnswer)](const QJsonObject &answer) { tell(cookieHeader(answer)); });
}

} // namespace tollivar::capture
