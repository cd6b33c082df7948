#include "ui/tray/tray_icon.h"

#include "platform/build_config.h"
#include "ui/skin/paint_manager.h"

#include <QIcon>
#include <QMenu>

namespace tollivar::ui {

namespace {

constexpr int kBalloonMilliseconds = 5'000;

} // namespace

TrayIcon::TrayIcon(QMenu &menu)
    : m_icon(std::make_unique<QSystemTrayIcon>(
          QIcon(DuiLib::CPaintManagerUI::imagePath(QStringLiteral("img/logo.svg")))))
{
    m_icon->setToolTip(QString(platform::build::kProductName));
    m_icon->setContextMenu(&menu);
    connect(&menu, &QMenu::aboutToShow, this, &TrayIcon::menuWanted);
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &TrayIcon::handle);
    // Shown also without an area: one that comes later takes the icon up.
    m_icon->show();
}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::isThere() const
{
    return m_icon != nullptr && QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::showBalloon(const QString &text)
{
    if (isThere()) {
        m_icon->showMessage(QString(platform::build::kProductName), text,
                            QSystemTrayIcon::Information, kBalloonMilliseconds);
    }
}

void TrayIcon::remove()
{
    m_icon.reset();
}

void TrayIcon::handle(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::DoubleClick) {
        Q_EMIT doubleClicked();
    }
}

} // namespace tollivar::ui
