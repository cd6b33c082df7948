#include "companions/clip_player/message_page.h"

#include "companions/clip_player/look.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tollivar::player {

using namespace Qt::StringLiterals;

namespace {

QLabel *addText(QWidget &page, const QString &name)
{
    auto *label = new QLabel(&page);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    page.layout()->addWidget(label);
    return label;
}

} // namespace

MessagePage::MessagePage(QWidget *parent) : QWidget(parent)
{
    constexpr int kMargin = 40;
    constexpr int kGap = 14;
    setObjectName(u"message"_s);
    setAttribute(Qt::WA_StyledBackground);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, 0, kMargin, 0);
    column->setSpacing(kGap);
    column->addStretch();
    m_icon = addText(*this, u"icon"_s);
    m_sentence = addText(*this, u"sentence"_s);
    m_hint = addText(*this, u"hint"_s);
    column->addStretch();
}

void MessagePage::tell(const QString &icon, const QString &sentence, const QString &hint)
{
    constexpr int kIconSize = 64;
    m_icon->setPixmap(look::icon(icon).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
    m_sentence->setText(sentence);
    m_hint->setText(hint);
}

} // namespace tollivar::player
