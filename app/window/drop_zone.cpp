#include "app/window/drop_zone.h"

#include "settings/general_options.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using ui::CDragDlg;
using ui::CTollivarDlg;

DropZone::DropZone(CTollivarDlg &window, settings::SettingsStore &settings, CDragDlg::Text text)
    : m_window(window)
    , m_settings(settings)
    , m_inbox([this](const platform::AppMessage &message) { take(message); })
    , m_zone(m_inbox.port(), std::move(text))
{
    place();
    connectZone();
}

DropZone::~DropZone() = default;

void DropZone::place()
{
    constexpr int kFromEdge = 24;
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const auto stored = m_settings.text(settings::keys::kDropZonePlace).split(u',');
    const QPoint wanted(stored.value(0).toInt(), stored.value(1).toInt());
    const bool isUsable = stored.size() == 2 && area.contains(wanted);
    m_zone.move(isUsable
                    ? wanted
                    : QPoint(area.right() - m_zone.width() - kFromEdge, area.top() + kFromEdge));
}

void DropZone::connectZone()
{
    QObject::connect(&m_zone, &CDragDlg::moveEnded, &m_zone, [this](QPoint moved) {
        m_settings.setText(settings::keys::kDropZonePlace,
                           u"%1,%2"_s.arg(moved.x()).arg(moved.y()));
    });
    QObject::connect(&m_zone, &CDragDlg::doubleClicked, &m_window, &CTollivarDlg::showAndActivate);
    QObject::connect(&m_window.totals(), &ui::TotalsLine::shareChanged, &m_zone,
                     &CDragDlg::setProgress);
    QObject::connect(&m_window, &CTollivarDlg::dropZoneToggled, &m_zone, [this] {
        m_presence.toggle();
        showIfWanted();
    });
    QObject::connect(&m_window, &CTollivarDlg::minimisedChanged, &m_zone, [this](bool is) {
        m_presence.setWindowMinimised(is);
        showIfWanted();
    });
    QObject::connect(&m_window, &CTollivarDlg::activatedByPerson, &m_zone, [this] {
        if (m_zone.isVisible()) {
            m_zone.raise();
        }
    });
}

void DropZone::applyOptions(const settings::CGeneralOptions &options)
{
    m_zone.setMonitoring(options.m_bMonitorUrl);
    m_presence.setOptions(
        {.isWanted = options.m_bShowDragZone, .standsForWindow = options.m_bMinimizeDragTask});
    showIfWanted();
}

void DropZone::showIfWanted()
{
    m_zone.setVisible(m_presence.isShown());
}

void DropZone::leaveScreen()
{
    m_zone.hide();
}

void DropZone::take(const platform::AppMessage &message)
{
    if (message.id == platform::AppMessageId::AddressReady) {
        m_window.intake().offerAddress(m_zone.receivedText(), message.first == 1
                                                                  ? ui::AddressOrigin::Clipboard
                                                                  : ui::AddressOrigin::Dropped);
    }
}

} // namespace tollivar::app
