#pragma once

#include "tests/support/sandbox.h"

#include <QProcess>
#include <QRect>
#include <QStringList>

#include <memory>

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

    /// Closes the window as its frame's button does.
    void close(const QString &window) const;

    /// A notification area at the lower edge, which keeps other windows off it.
    void startTray();
    /// The window that has the keyboard.
    [[nodiscard]] QString active() const;
    /// A property of a window as xprop shows it.
    [[nodiscard]] QByteArray property(const QString &window, const QString &name) const;
    /// How many windows have such a title.
    [[nodiscard]] qsizetype windowCount(const QString &title) const;
    /// How many tips and balloons stand beside what they speak of.
    [[nodiscard]] qsizetype tipCount() const;
    /// Where the window lies, in pixels of the screen.
    [[nodiscard]] QRect place(const QString &window) const;
    /// Moves the pointer there and presses a button once: 1 is the left, 3 the right one.
    void click(QPoint place, int button = 1) const;
    /// Moves the pointer there and presses the left button twice, quickly.
    void doubleClick(QPoint place) const;
    /// Takes the window there, moves or resizes it by about `way`, and lets go. Returns when the
    /// window manager is done with it.
    void drag(const QString &window, QPoint place, QPoint way) const;
    /// Another program comes in front of all others; the number of its window.
    QString startOther();
    /// Counts from now on which windows come onto the screen, also for a moment.
    void watchScreen();
    /// How many came until now. What a program that has ended asked for is among them.
    [[nodiscard]] qsizetype windowsShown();
    /// Another program copies this.
    void copy(const QString &text);
    /// What any program copied last.
    [[nodiscard]] QByteArray copied() const;
    /// A person drags a text out of another program and lets it go where it is welcome.
    void dropText(const QString &text, QPoint target);
    /// The same with a file that is not.
    void dropFileInVain(const QString &path, QPoint target);

private:
    class DragSource;

    void pull(QPoint place, QPoint way) const;
    void letGo() const;
    void settle() const;
    [[nodiscard]] qsizetype settlingsSeen();
    void moveTo(QPoint place) const;

    QProcess m_server;
    QProcess m_manager;
    QProcess m_tray;
    QProcess m_copier;
    QProcess m_watcher;
    QByteArray m_watched;
    qsizetype m_shownBefore = 0;
    std::unique_ptr<DragSource> m_dragSource;
    QByteArray m_oldDisplay;
    QByteArray m_oldPlatform;
};

} // namespace tollivar::test
