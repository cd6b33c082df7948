#include "ui/skin/text_ui.h"

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

QString richText(const QString &markup, const QColor &linkColor, bool underlineLinks)
{
    QString text = markup.toHtmlEscaped();
    text.replace(u"\r\n"_s, u"<br>"_s).replace(u'\n', u"<br>"_s);
    text.replace(u"{b}"_s, u"<b>"_s).replace(u"{/b}"_s, u"</b>"_s);
    text.replace(u"{a}"_s, u"<a href=\"#\" style=\"color:%1;text-decoration:%2\">"_s.arg(
                               linkColor.name(), underlineLinks ? u"underline"_s : u"none"_s));
    return text.replace(u"{/a}"_s, u"</a>"_s);
}

QString plainText(QString markup)
{
    for (const auto &mark : {u"{b}"_s, u"{/b}"_s, u"{a}"_s, u"{/a}"_s}) {
        markup.remove(mark);
    }
    return markup;
}

CTextUI::CTextUI(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::RichText);
    connect(this, &QLabel::linkActivated, this, &CTextUI::linkClicked);
    connect(this, &QLabel::linkHovered, this, [this](const QString &link) {
        m_isHovered = !link.isEmpty();
        render();
    });
}

void CTextUI::setMarkup(const QString &markup)
{
    m_markup = markup;
    const bool hasLink = markup.contains(u"{a}"_s);
    setTextInteractionFlags(hasLink ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                    : Qt::NoTextInteraction);
    setFocusPolicy(hasLink ? Qt::TabFocus : Qt::NoFocus);
    setAccessibleName(plainText(markup));
    render();
}

void CTextUI::setLinkColors(QColor normal, QColor hovered)
{
    m_linkColor = normal;
    m_hoverColor = hovered;
    render();
}

void CTextUI::render()
{
    setText(richText(m_markup, m_isHovered ? m_hoverColor : m_linkColor, m_isHovered));
}

} // namespace tollivar::DuiLib
