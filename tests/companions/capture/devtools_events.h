#pragma once

#include "companions/capture/devtools_message.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace tollivar::test {

/// An event as the browser writes it.
[[nodiscard]] inline capture::DevToolsMessage devToolsEvent(const QByteArray &method,
                                                            const QByteArray &parameters,
                                                            const QByteArray &session = "S1")
{
    const auto message =
        capture::parseDevToolsMessage(R"({"method":")" + method + R"(","params":)" + parameters +
                                      R"(,"sessionId":")" + session + R"("})");
    if (!message) {
        ADD_FAILURE() << "no event: " << parameters.constData();
        return {};
    }
    return *message;
}

} // namespace tollivar::test
