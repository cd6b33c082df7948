#include "app/window/player_help.h"

#include "ui/dialogs/cant_play_dlg.h"

namespace tollivar::app {

PlayerHelp::PlayerHelp(const settings::SettingsStore &settings, ui::WindowTexts texts,
                       ReadVersion read)
    : m_settings(settings)
    , m_texts(std::move(texts))
    , m_read(std::move(read))
{
}

bool PlayerHelp::isNoteWanted() const
{
    return !m_settings.flag(settings::keys::kNoRemindFlashVersion) && !ui::isNewEnough(m_read());
}

void PlayerHelp::show(QWidget &owner)
{
    // One that was closed lives on for a moment.
    if (m_window.isNull() || !m_window->isVisible()) {
        m_window = new ui::CCantPlayDlg(&owner, m_settings, m_texts, m_read());
        connect(m_window, &ui::CCantPlayDlg::upgradeWanted, this, &PlayerHelp::upgradeWanted);
        connect(m_window, &ui::CCantPlayDlg::choiceStored, this, &PlayerHelp::choiceStored);
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

} // namespace tollivar::app
