#include "app/language/button_texts.h"

#include <QCoreApplication>

#include <array>

namespace tollivar::language {

namespace {

struct Button {
    QByteArrayView source; ///< Qt's word without the mark of its key
    QStringView id;
};
constexpr std::array kButtons = {
    Button{"OK", u"strOK"}, Button{"Cancel", u"strCancel"}, Button{"Yes", u"strYes"},
    Button{"No", u"strNo"}, Button{"Retry", u"strRetry"},   Button{"Close", u"strClose"},
};

} // namespace

ButtonTexts::ButtonTexts(Text text) : m_text(std::move(text))
{
    QCoreApplication::installTranslator(this);
}

QString ButtonTexts::translate(const char *context, const char *source,
                               const char * /*disambiguation*/, int /*n*/) const
{
    // Each desktop's theme has a context of its own: "QPlatformTheme", "QGnomeTheme".
    if (!QByteArrayView(context).endsWith("Theme")) {
        return {};
    }
    QByteArray word(source);
    word.replace('&', QByteArrayView());
    for (const Button &button : kButtons) {
        if (word == button.source) {
            return m_text(button.id.toString());
        }
    }
    return {};
}

} // namespace tollivar::language
