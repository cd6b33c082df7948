#include "ui/dialogs/settings_dialog.h"

#include "update/update_schedule.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStandardItemModel>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using DuiLib::RequiredControl;
using settings::CGeneralOptions;
using settings::COptionsManager;
using update::UpdateMode;

namespace {

constexpr std::array kControls = {
    RequiredControl{"TabLayout"_L1, "switch"_L1},
    RequiredControl{"Option"_L1, "pageGeneral"_L1, DuiLib::OptionLook::Any},
    RequiredControl{"CheckBox"_L1, "chkDragDrop"_L1},
    RequiredControl{"CheckBox"_L1, "chkMinizeDrag"_L1},
    RequiredControl{"CheckBox"_L1, "chkRetryParse"_L1},
    RequiredControl{"CheckBox"_L1, "chkUpdates"_L1},
    RequiredControl{"Combo"_L1, "cbSimDownloads"_L1},
    RequiredControl{"Combo"_L1, "cbRetryTime"_L1},
    RequiredControl{"Combo"_L1, "cbUpdatesMode"_L1},
    RequiredControl{"Label"_L1, "textWaylandNote"_L1},
    RequiredControl{"Button"_L1, "btnOK"_L1},
    RequiredControl{"Button"_L1, "btnCancel"_L1},
    RequiredControl{"Button"_L1, "btnClose"_L1},
};

/// As the options hold them; the list's items stand in their order.
constexpr int kEveryStart = static_cast<int>(UpdateMode::EveryStart);
constexpr int kNever = static_cast<int>(UpdateMode::Never);

/// The check boxes and the options that they edit.
struct Flag {
    QLatin1StringView name;
    bool CGeneralOptions::*option = nullptr;
};
constexpr std::array kFlags = {
    Flag{"chkDragDrop"_L1, &CGeneralOptions::m_bShowDragZone},
    Flag{"chkMinizeDrag"_L1, &CGeneralOptions::m_bMinimizeDragTask},
    Flag{"chkRetryParse"_L1, &CGeneralOptions::m_bAutoParseOriUrl},
};

} // namespace

ClipboardWatch clipboardWatchOn(const QString &windowSystem)
{
    // Of this one Qt has a variant for each kind of graphics: "wayland-egl".
    return windowSystem.startsWith("wayland"_L1) ? ClipboardWatch::InFrontOnly
                                                 : ClipboardWatch::InBackground;
}

CSettingsDialog::CSettingsDialog(QWidget *owner, COptionsManager &options, const WindowTexts &texts,
                                 ClipboardWatch watch)
    : CUILibDialog(owner)
    , m_options(options)
    , m_copy(options.general())
{
    createFace(u"DialogSettings.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_SETTINGS"_s, texts.dialog);
    if (watch == ClipboardWatch::InFrontOnly) {
        control<QLabel>("textWaylandNote"_L1).setText(texts.text(u"strNoClipboardWatch"_s));
    }
    fill();
}

void CSettingsDialog::fill()
{
    for (const auto &[name, option] : kFlags) {
        auto &box = control<QCheckBox>(name);
        const QSignalBlocker quiet(box);
        box.setChecked(m_copy.*option);
    }
    fillNumber("cbSimDownloads"_L1, m_copy.m_nMaxSimDownloads, 1);
    fillNumber("cbRetryTime"_L1, m_copy.m_nMaxRetry, 0);
    if (m_copy.m_nCheckUpdate < 0 || m_copy.m_nCheckUpdate > kNever) {
        // As with the numbers: what the list does not know is shown, and stays unless changed.
        control<QComboBox>("cbUpdatesMode"_L1)
            .addItem(QString::number(m_copy.m_nCheckUpdate), m_copy.m_nCheckUpdate);
    }
    showUpdateMode(m_copy.m_nCheckUpdate);
}

void CSettingsDialog::fillNumber(QLatin1StringView list, int value, int first)
{
    auto &combo = control<QComboBox>(list);
    if (value < first || value - first >= combo.count()) {
        // A number beyond the list is the person's own: it is shown, and stays unless changed.
        combo.addItem(QString::number(value));
        combo.setCurrentIndex(combo.count() - 1);
        return;
    }
    combo.setCurrentIndex(value - first);
}

void CSettingsDialog::showUpdateMode(int mode)
{
    m_copy.m_nCheckUpdate = mode;
    const bool isOn = mode != kNever;
    auto &box = control<QCheckBox>("chkUpdates"_L1);
    const QSignalBlocker quiet(box);
    box.setChecked(isOn);
    auto &list = control<QComboBox>("cbUpdatesMode"_L1);
    const int unknown = list.findData(mode);
    const int known = mode >= 0 && mode <= kNever && mode < list.count() ? mode : -1;
    list.setCurrentIndex(unknown >= 0 ? unknown : known);
    list.setEnabled(isOn);
    const auto *items = qobject_cast<QStandardItemModel *>(list.model());
    // A person's skin may list fewer modes.
    if (auto *never = items == nullptr ? nullptr : items->item(kNever)) {
        never->setEnabled(isOn);
    }
}

void CSettingsDialog::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kClick) {
        handleClick(event.name);
    } else if (event.type == DuiLib::events::kSelectChanged) {
        handleCheck(event.name);
    } else if (event.type == DuiLib::events::kItemSelect) {
        handleChoice(event.name);
    }
}

void CSettingsDialog::handleClick(const QString &name)
{
    if (name == "btnOK"_L1) {
        store();
        accept();
    } else if (name == "btnCancel"_L1 || name == "btnClose"_L1) {
        reject();
    } else if (name == "pageGeneral"_L1) {
        control<QStackedWidget>("switch"_L1).setCurrentIndex(0);
    }
}

void CSettingsDialog::handleCheck(const QString &name)
{
    if (name == "chkUpdates"_L1) {
        showUpdateMode(control<QCheckBox>("chkUpdates"_L1).isChecked() ? kEveryStart : kNever);
    }
    for (const auto &[box, option] : kFlags) {
        if (name == box) {
            m_copy.*option = control<QCheckBox>(box).isChecked();
        }
    }
}

void CSettingsDialog::handleChoice(const QString &name)
{
    // Numbers are what the items say, whatever their place.
    if (name == "cbSimDownloads"_L1) {
        m_copy.m_nMaxSimDownloads = control<QComboBox>("cbSimDownloads"_L1).currentText().toInt();
    } else if (name == "cbRetryTime"_L1) {
        m_copy.m_nMaxRetry = control<QComboBox>("cbRetryTime"_L1).currentText().toInt();
    } else if (name == "cbUpdatesMode"_L1) {
        const auto &list = control<QComboBox>("cbUpdatesMode"_L1);
        const QVariant unknown = list.currentData();
        showUpdateMode(unknown.isValid() ? unknown.toInt() : list.currentIndex());
    }
}

void CSettingsDialog::store()
{
    m_options.Set(COptionsManager::kGeneral, m_copy);
    m_options.SaveAll();
    Q_EMIT optionsChanged();
}

} // namespace tollivar::ui
