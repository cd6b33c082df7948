#include "platform/internal/display_posix.h"
#include "platform/window_place.h"

#include <xcb/xcb.h>

namespace tollivar::platform {

std::optional<QPoint> windowPlace(std::uint32_t window)
{
    int number = 0;
    const internal::DisplayConnection connection = internal::connectToDisplay(number);
    if (!connection) {
        return std::nullopt;
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; number > 0 && screen.rem > 1; --number) {
        xcb_screen_next(&screen);
    }
    const auto question =
        xcb_translate_coordinates(connection.get(), window, screen.data->root, 0, 0);
    const internal::ReplyOwner<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(connection.get(), question, nullptr));
    return reply ? std::optional(QPoint(reply->dst_x, reply->dst_y)) : std::nullopt;
}

} // namespace tollivar::platform
