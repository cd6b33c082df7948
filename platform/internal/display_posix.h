#pragma once

#include <cstdlib>
#include <memory>

struct xcb_connection_t;

namespace tollivar::platform::internal {

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};
/// An answer of the display; its library hands them over to be freed.
template<typename Reply>
using ReplyOwner = std::unique_ptr<Reply, FreeReply>;

struct Disconnect {
    void operator()(xcb_connection_t *connection) const;
};
using DisplayConnection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// The display of this session, and the number of the screen on it; null when there is none.
[[nodiscard]] DisplayConnection connectToDisplay(int &screen);

} // namespace tollivar::platform::internal
