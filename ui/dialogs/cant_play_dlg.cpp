#include "ui/dialogs/cant_play_dlg.h"

#include "ui/layout/window_layout.h"
#include "ui/skin/text_ui.h"

#include <QCheckBox>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using DuiLib::RequiredControl;

namespace {

constexpr std::array kControls = {
    RequiredControl{"CheckBox"_L1, "chkDonotShowMsg"_L1},
    RequiredControl{"Text"_L1, "textFlashIEVersion"_L1},
    RequiredControl{"Text"_L1, "textUpgradeFlash"_L1},
    RequiredControl{"Button"_L1, "btnOK"_L1},
    RequiredControl{"Button"_L1, "btnCancel"_L1},
    RequiredControl{"Button"_L1, "btnClose"_L1},
};

constexpr std::uint32_t kFirstUsableMajor = 9;

const QString kLayoutSection = u"DIALOG_CANTPLAY"_s;

QString numbers(const platform::FlashVersion &version)
{
    return u"%1,%2,%3,%4"_s.arg(version[0]).arg(version[1]).arg(version[2]).arg(version[3]);
}

QString versionText(const platform::FlashVersion &version, const WindowTexts &texts)
{
    if (isNewEnough(version)) {
        return texts.text(u"strMsgFlashVersion"_s) + u" : "_s + numbers(version);
    }
    return u"{b}"_s + texts.text(u"strMsgFlashOld1"_s) + u" ("_s + numbers(version) + u"), "_s +
           texts.text(u"strMsgFlashOld2"_s) + u"{/b}"_s;
}

} // namespace

bool isNewEnough(const platform::FlashVersion &version)
{
    return version[0] >= kFirstUsableMajor;
}

CCantPlayDlg::CCantPlayDlg(QWidget *owner, const settings::SettingsStore &settings,
                           const WindowTexts &texts, const platform::FlashVersion &version)
    : CUILibDialog(owner)
    , m_settings(settings)
{
    setAttribute(Qt::WA_DeleteOnClose);
    createFace(u"DialogCantPlay.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_REMINDER"_s, texts.dialog);
    control<DuiLib::CTextUI>("textFlashIEVersion"_L1).setMarkup(versionText(version, texts));
    control<QCheckBox>("chkDonotShowMsg"_L1)
        .setChecked(m_settings.flag(settings::keys::kNoRemindFlashVersion));
    restoreLayout(*this, kLayoutSection);
}

void CCantPlayDlg::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kLink) {
        Q_EMIT upgradeWanted();
    } else if (event.type != DuiLib::events::kClick) {
        return;
    } else if (event.name == "btnOK"_L1) {
        accept();
    } else if (event.name == "btnCancel"_L1 || event.name == "btnClose"_L1) {
        reject();
    }
}

void CCantPlayDlg::reject()
{
    m_settings.setFlag(settings::keys::kNoRemindFlashVersion,
                       control<QCheckBox>("chkDonotShowMsg"_L1).isChecked());
    Q_EMIT choiceStored();
    CUILibDialog::reject();
}

void CCantPlayDlg::done(int result)
{
    saveLayout(*this, kLayoutSection);
    CUILibDialog::done(result);
}

} // namespace tollivar::ui
