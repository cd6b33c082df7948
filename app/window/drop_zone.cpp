#include "app/window/drop_zone.h"

#include "settings/general_options.h"
#include "ui/drop_zone/zone_place.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>
#include <vector>

namespace tollivar::app {

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
    std::vector<QRect> areas{QGuiApplication::primaryScreen()->availableGeometry()};
    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        areas.push_back(screen->availableGeometry());
    }
    m_zone.move(
        ui::zonePlace(m_settings.text(settings::keys::kDropZonePlace), m_zone.size(), areas));
}

void DropZone::connectZone()
{
    QObject::connect(&m_zone, &CDragDlg::moveEnded, &m_zone, [this](QPoint moved) {
        m_settings.setText(settings::keys::kDropZonePlace, ui::storedZonePlace(moved));
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

void DropZone::applyLanguage()
{
    m_zone.applyLanguage();
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
        m_window.intake().offerAddress(m_zone.receivedText(),
                                       message.first == CDragDlg::kFromClipboard
                                           ? ui::AddressOrigin::Clipboard
                                           : ui::AddressOrigin::Dropped);
    }
}

} // namespace tollivar::app
