#pragma once

#include <memory>

namespace tollivar::settings {

/// One group of options that loads, saves and copies itself; a dialog edits a clone of it.
///
/// Threads: the main thread.
class COptionsEx {
public:
    virtual ~COptionsEx() = default;
    /// Reads the group from the settings file; the base has nothing to read.
    virtual void Load() {}
    /// Writes the group to the settings file; the base has nothing to write.
    virtual void Save() {}
    /// Takes the values over from a group of the same kind; from any other nothing.
    virtual void CopyFrom(const COptionsEx &other) = 0;
    [[nodiscard]] virtual std::unique_ptr<COptionsEx> Clone() const = 0;

protected:
    COptionsEx() = default;
    COptionsEx(const COptionsEx &) = default;
    COptionsEx &operator=(const COptionsEx &) = default;
};

} // namespace tollivar::settings
