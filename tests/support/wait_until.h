#pragma once

#include <chrono>
#include <functional>

namespace tollivar::test {

/// Runs the event loop until `condition` holds; fails the test, naming `what`, after `limit`.
/// The limit is generous on purpose: it ends a broken test and measures nothing.
bool waitUntil(const char *what, const std::function<bool()> &condition,
               std::chrono::milliseconds limit = std::chrono::seconds(30));

} // namespace tollivar::test
