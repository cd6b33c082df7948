#include "settings/options_manager.h"

#include "settings/general_options.h"

namespace tollivar::settings {

COptionsManager::COptionsManager(SettingsStore store) : m_store(std::move(store)) {}

COptionsManager::~COptionsManager() = default;

void COptionsManager::LoadAll()
{
    Set(kGeneral, std::make_unique<CGeneralOptions>(m_store));
    for (const auto &[id, group] : m_groups) {
        group->Load();
    }
}

void COptionsManager::SaveAll()
{
    for (const auto &[id, group] : m_groups) {
        group->Save();
    }
}

CGeneralOptions COptionsManager::general() const
{
    CGeneralOptions copy(m_store);
    if (const COptionsEx *known = Get(kGeneral)) {
        copy.CopyFrom(*known);
    }
    return copy;
}

COptionsEx *COptionsManager::Get(int id) const
{
    const auto place = m_groups.find(id);
    return place == m_groups.end() ? nullptr : place->second.get();
}

void COptionsManager::Set(int id, std::unique_ptr<COptionsEx> group)
{
    if (!group) {
        return;
    }
    if (COptionsEx *const known = Get(id)) {
        known->CopyFrom(*group);
    } else {
        m_groups.emplace(id, std::move(group));
    }
}

void COptionsManager::Set(int id, const COptionsEx &group)
{
    Set(id, group.Clone());
}

void COptionsManager::Clear()
{
    m_groups.clear();
}

} // namespace tollivar::settings
