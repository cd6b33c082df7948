#pragma once

#include "settings/options.h"
#include "settings/settings_store.h"

#include <map>
#include <memory>

namespace tollivar::settings {

class CGeneralOptions;

/// Every group of options, by its id; the general options have id 0.
///
/// Threads: the main thread.
/// Owns:    the groups. Get() lends one out until it is replaced or the manager cleared.
class COptionsManager {
public:
    /// Id of the general options.
    static constexpr int kGeneral = 0;

    explicit COptionsManager(SettingsStore store);
    virtual ~COptionsManager();
    COptionsManager(const COptionsManager &) = delete;
    COptionsManager &operator=(const COptionsManager &) = delete;

    /// Makes the general options anew and loads every group.
    virtual void LoadAll();
    /// Saves every group, in the order of the ids.
    virtual void SaveAll();
    /// A copy of the general options; before LoadAll() their initial values.
    [[nodiscard]] CGeneralOptions general() const;
    /// Null for an unknown id.
    [[nodiscard]] virtual COptionsEx *Get(int id) const;
    /// A known group copies the values of `group`; a new one is kept: the object itself when it is
    /// handed over, a clone when it is lent. Handing over null changes nothing.
    virtual void Set(int id, std::unique_ptr<COptionsEx> group);
    virtual void Set(int id, const COptionsEx &group);
    virtual void Clear();

private:
    SettingsStore m_store;
    std::map<int, std::unique_ptr<COptionsEx>> m_groups;
};

} // namespace tollivar::settings
