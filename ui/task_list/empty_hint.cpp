#include "ui/task_list/empty_hint.h"

#include "ui/skin/control_class.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

EmptyHint::EmptyHint(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
    , m_button(new QToolButton(this))
{
    constexpr int kBetween = 12;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kBetween);
    column->addWidget(m_text, 0, Qt::AlignHCenter);
    column->addWidget(m_button, 0, Qt::AlignHCenter);
    m_text->setTextFormat(Qt::PlainText);
    // What the style sheets of skins choose by; they give every text its colour.
    m_text->setProperty("look", u"hint"_s);
    m_button->setObjectName(u"btnEmptyAdd"_s);
    m_button->setProperty(DuiLib::kClassProperty, QString(DuiLib::kButtonClass));
    m_button->setProperty("look", u"primary"_s);
    connect(m_button, &QToolButton::clicked, this, &EmptyHint::addWanted);
}

void EmptyHint::setTexts(const QString &hint, const QString &button)
{
    m_text->setText(hint);
    m_button->setText(button);
    m_button->show();
    center();
}

void EmptyHint::setText(const QString &hint)
{
    m_text->setText(hint);
    m_button->hide();
    center();
}

void EmptyHint::center()
{
    adjustSize();
    move((parentWidget()->width() - width()) / 2, (parentWidget()->height() - height()) / 2);
}

} // namespace tollivar::ui
