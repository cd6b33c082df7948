#include "settings/general_options.h"

namespace tollivar::settings {

CGeneralOptions::CGeneralOptions(SettingsStore store) : m_store(std::move(store)) {}

void CGeneralOptions::Load()
{
    m_bMonitorUrl = m_store.flag(keys::kMonitorVideoSite);
    m_bAutoParseOriUrl = m_store.flag(keys::kAutoParseOriginalUrl);
    m_nMaxRetry = m_store.number(keys::kMaxRetry);
    m_nMaxSimDownloads = m_store.number(keys::kMaxSimDownloads);
    m_bShowDragZone = m_store.flag(keys::kShowDragZone);
    m_nCheckUpdate = m_store.number(keys::kCheckUpdate);
    m_bMinimizeDragTask = m_store.flag(keys::kMinimizeDragTask);
}

void CGeneralOptions::Save()
{
    m_store.setFlag(keys::kMonitorVideoSite, m_bMonitorUrl);
    m_store.setFlag(keys::kAutoParseOriginalUrl, m_bAutoParseOriUrl);
    m_store.setNumber(keys::kMaxRetry, m_nMaxRetry);
    m_store.setNumber(keys::kMaxSimDownloads, m_nMaxSimDownloads);
    m_store.setFlag(keys::kShowDragZone, m_bShowDragZone);
    m_store.setNumber(keys::kCheckUpdate, m_nCheckUpdate);
    m_store.setFlag(keys::kMinimizeDragTask, m_bMinimizeDragTask);
}

void CGeneralOptions::CopyFrom(const COptionsEx &other)
{
    if (const auto *const general = dynamic_cast<const CGeneralOptions *>(&other)) {
        *this = *general;
    }
}

std::unique_ptr<COptionsEx> CGeneralOptions::Clone() const
{
    auto clone = std::make_unique<CGeneralOptions>(m_store);
    clone->CopyFrom(*this);
    return clone;
}

} // namespace tollivar::settings
