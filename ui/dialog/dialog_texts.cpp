#include "ui/dialog/dialog_texts.h"

#include "ui/skin/text_ui.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace tollivar::ui {

namespace {

bool isImage(const QToolButton &button)
{
    return button.toolButtonStyle() == Qt::ToolButtonIconOnly;
}

void setText(QWidget &control, const QString &text)
{
    if (auto *marked = qobject_cast<DuiLib::CTextUI *>(&control)) {
        marked->setMarkup(text);
    } else if (auto *label = qobject_cast<QLabel *>(&control)) {
        label->setText(text);
        if (label->buddy() != nullptr) {
            label->buddy()->setAccessibleName(text);
        }
    } else if (auto *image = qobject_cast<QToolButton *>(&control);
               image != nullptr && isImage(*image)) {
        image->setToolTip(text);
        image->setAccessibleName(text);
    } else if (auto *button = qobject_cast<QAbstractButton *>(&control)) {
        button->setText(text);
    } else {
        control.setAccessibleName(text);
    }
}

void setItems(QComboBox &list, const QString &section, const DialogTexts &texts)
{
    for (int item = 0; item < list.count(); ++item) {
        const QString text = texts(section, list.objectName() + u'_' + QString::number(item));
        if (!text.isEmpty()) {
            list.setItemText(item, text);
        }
    }
}

} // namespace

void applyDialogTexts(QWidget &window, const QString &section, const DialogTexts &texts)
{
    const QString title = texts(section, QStringLiteral("title"));
    if (!title.isEmpty()) {
        window.setWindowTitle(title);
        if (auto *caption = window.findChild<QWidget *>(QStringLiteral("textCaption"))) {
            setText(*caption, title);
        }
    }
    const auto controls = window.findChildren<QWidget *>();
    for (QWidget *control : controls) {
        if (control->objectName().isEmpty()) {
            continue;
        }
        if (auto *list = qobject_cast<QComboBox *>(control)) {
            setItems(*list, section, texts);
        }
        const QString text = texts(section, control->objectName());
        if (!text.isEmpty()) {
            setText(*control, text);
        }
    }
}

} // namespace tollivar::ui
