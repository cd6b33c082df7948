#pragma once

#include "tests/support/sandbox.h"

#include <QProcess>
#include <QStringList>

namespace tollivar::test {

/// A desktop of the test's own: an X server without a screen and a window manager. Programs that the
/// test starts meanwhile appear on it.
///
/// Fails the test when a part of it does not start.
class DesktopSession {
public:
    explicit DesktopSession(const Sandbox &sandbox);
    ~DesktopSession();
    DesktopSession(const DesktopSession &) = delete;
    DesktopSession &operator=(const DesktopSession &) = delete;

    /// What a person's hands do, and what is on the screen: runs xdotool and returns what it says
    /// without the line's end; empty when it fails.
    [[nodiscard]] QByteArray ask(const QStringList &arguments) const;
    void act(const QStringList &arguments) const;

    /// The number of the first window whose title holds `title`; empty while there is none.
    [[nodiscard]] QString window(const QString &title) const;
    /// Waits for it.
    [[nodiscard]] QString waitForWindow(const QString &title) const;
    /// Gives that window the keyboard, then types keys such as "alt+d".
    void press(const QString &window, const QString &keys) const;

private:
    QProcess m_server;
    QProcess m_manager;
    QByteArray m_oldDisplay;
    QByteArray m_oldPlatform;
};

} // namespace tollivar::test
