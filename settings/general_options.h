#pragma once

#include "settings/options.h"
#include "settings/settings_store.h"

namespace tollivar::settings {

/// The download-behaviour options. The initial values are those of a group that was never loaded;
/// a loaded one has the settings table's defaults for missing keys, which differ for the retries
/// and for minimizing.
class CGeneralOptions final : public COptionsEx {
public:
    explicit CGeneralOptions(SettingsStore store);

    void Load() override;
    void Save() override;
    void CopyFrom(const COptionsEx &other) override;
    [[nodiscard]] std::unique_ptr<COptionsEx> Clone() const override;

    int m_nCheckUpdate = 1;
    bool m_bReserved = true; ///< copied, never loaded or saved
    bool m_bShowDragZone = true;
    bool m_bMinimizeDragTask = true;
    bool m_bMonitorUrl = true;
    bool m_bAutoParseOriUrl = true;
    int m_nMaxSimDownloads = 5;
    int m_nMaxRetry = 3;

private:
    SettingsStore m_store;
};

} // namespace tollivar::settings
