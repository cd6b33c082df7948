#include "platform/compositor.h"
#include "platform/internal/display_posix.h"

#include <QByteArray>

#include <xcb/xcb.h>

namespace tollivar::platform {

using internal::ReplyOwner;

bool isDisplayComposited()
{
    int screen = 0;
    const internal::DisplayConnection connection = internal::connectToDisplay(screen);
    if (!connection) {
        return true;
    }
    // By convention a compositor owns the selection of this name.
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
    const auto question = xcb_intern_atom(
        connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const ReplyOwner<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection.get(), question, nullptr));
    if (!atom) {
        return false;
    }
    const auto ownerQuestion = xcb_get_selection_owner(connection.get(), atom->atom);
    const ReplyOwner<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection.get(), ownerQuestion, nullptr));
    return owner && owner->owner != XCB_NONE;
}

} // namespace tollivar::platform
