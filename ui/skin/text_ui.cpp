#include "ui/skin/text_ui.h"

#include <QKeyEvent>

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
    setTextInteractionFlags(hasLink() ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                      : Qt::NoTextInteraction);
    setFocusPolicy(hasLink() ? Qt::TabFocus : Qt::NoFocus);
    setAccessibleName(plainText(markup));
    render();
}

void CTextUI::setLinkColors(QColor normal, QColor hovered)
{
    m_linkColor = normal;
    m_hoverColor = hovered;
    render();
}

bool CTextUI::hasLink() const
{
    return m_markup.contains(u"{a}"_s);
}

void CTextUI::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    render();
}

void CTextUI::focusOutEvent(QFocusEvent *event)
{
    QLabel::focusOutEvent(event);
    render();
}

bool CTextUI::focusNextPrevChild(bool next)
{
    // The label's own way makes two stops of one link, and backwards never leaves it.
    return QWidget::focusNextPrevChild(next);
}

void CTextUI::keyPressEvent(QKeyEvent *event)
{
    // Enter would follow a link too, but the windows of skins swallow it.
    if (hasLink() && event->key() == Qt::Key_Space) {
        Q_EMIT linkClicked();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void CTextUI::render()
{
    const bool isPointedOut = m_isHovered || (hasLink() && hasFocus());
    setText(richText(m_markup, isPointedOut ? m_hoverColor : m_linkColor, isPointedOut));
}

} // namespace tollivar::DuiLib
