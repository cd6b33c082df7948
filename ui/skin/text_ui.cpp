#include "ui/skin/text_ui.h"

#include "ui/skin/fitted_text.h"

#include <QKeyEvent>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLinkLines = 2;

QString linkStart(const QColor &color, bool isUnderlined)
{
    return u"<a href=\"#\" style=\"color:%1;text-decoration:%2\">"_s.arg(
        color.name(), isUnderlined ? u"underline"_s : u"none"_s);
}

} // namespace

QString richText(const QString &markup, const QColor &linkColor, bool underlineLinks)
{
    QString text = markup.toHtmlEscaped();
    text.replace(u"\r\n"_s, u"<br>"_s).replace(u'\n', u"<br>"_s);
    text.replace(u"{b}"_s, u"<b>"_s).replace(u"{/b}"_s, u"</b>"_s);
    text.replace(u"{a}"_s, linkStart(linkColor, underlineLinks));
    return text.replace(u"{/a}"_s, u"</a>"_s);
}

QString richLink(const QStringList &lines, const QColor &linkColor, bool underlineLinks)
{
    return linkStart(linkColor, underlineLinks) +
           lines.join(u'\n').toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</a>"_s;
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
    m_link.clear();
    setAccessibleName(plainText(markup));
    show(markup);
}

void CTextUI::setLink(const QString &text)
{
    m_link = text;
    setAccessibleName(text);
    show(u"{a}"_s + text + u"{/a}"_s);
}

void CTextUI::show(const QString &markup)
{
    m_markup = markup;
    setTextInteractionFlags(hasLink() ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                      : Qt::NoTextInteraction);
    setFocusPolicy(hasLink() ? Qt::TabFocus : Qt::NoFocus);
    render();
}

void CTextUI::setLinkColors(QColor normal, QColor hovered)
{
    m_linkColor = normal;
    m_hoverColor = hovered;
    render();
}

QSize CTextUI::minimumSizeHint() const
{
    // A link bends to the room there is; asking for more would widen its window.
    const QSize hint = QLabel::minimumSizeHint();
    return m_link.isEmpty() ? hint : QSize(0, hint.height());
}

void CTextUI::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (!m_link.isEmpty() && event->size().width() != event->oldSize().width()) {
        render();
    }
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
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
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
    const QColor &color = isPointedOut ? m_hoverColor : m_linkColor;
    setText(m_link.isEmpty()
                ? richText(m_markup, color, isPointedOut)
                : richLink(fittedLines(m_link, font(), contentsRect().width(), kLinkLines), color,
                           isPointedOut));
}

} // namespace tollivar::DuiLib
