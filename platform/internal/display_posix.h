#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace tollivar::platform::internal {

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};
/// An answer of the display; its library hands them over to be freed.
template<typename Reply>
using ReplyOwner = std::unique_ptr<Reply, FreeReply>;

using DisplayConnection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

} // namespace tollivar::platform::internal
