#include "platform/internal/display_posix.h"

#include <utility>
#include <xcb/xcb.h>

namespace tollivar::platform::internal {

void Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

DisplayConnection connectToDisplay(int &screen)
{
    // One that failed is no null, and has to be given back too.
    DisplayConnection connection(xcb_connect(nullptr, &screen));
    return xcb_connection_has_error(connection.get()) == 0 ? std::move(connection)
                                                           : DisplayConnection();
}

} // namespace tollivar::platform::internal
