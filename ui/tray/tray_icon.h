#pragma once

#include <QObject>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>

class QMenu;

namespace tollivar::ui {

/// The program's icon in the notification area, with its balloon and menu. On a desktop without
/// such an area it does nothing, and isThere() says so.
///
/// Threads: the main thread.
/// Owns:    the icon; the menu is borrowed.
class TrayIcon final : public QObject {
    Q_OBJECT

public:
    explicit TrayIcon(QMenu &menu);
    ~TrayIcon() override;
    TrayIcon(const TrayIcon &) = delete;
    TrayIcon &operator=(const TrayIcon &) = delete;

    /// Whether a person can find the icon now.
    [[nodiscard]] bool isThere() const;
    void showBalloon(const QString &text);
    /// Takes the icon away; it does not come back.
    void remove();

Q_SIGNALS:
    void doubleClicked();
    /// The menu is about to open.
    void menuWanted();

private:
    void handle(QSystemTrayIcon::ActivationReason reason);

    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace tollivar::ui
