#include "platform/web_address.h"

#include <QUrl>

#include <algorithm>

namespace tollivar::platform {

bool isWebAddress(const QString &text)
{
    const auto isControl = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    if (text.size() > kMaximumWebAddress || std::any_of(text.begin(), text.end(), isControl)) {
        return false;
    }
    const QUrl url(text);
    const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
    // Browsers end the host at a backslash; here it would belong to a user's name before the host,
    // and the two would disagree on whose address it is.
    return url.isValid() && isWeb && !url.host().isEmpty() && !url.userInfo().contains(u'\\');
}

} // namespace tollivar::platform
