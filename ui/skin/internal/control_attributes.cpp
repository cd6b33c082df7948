#include "ui/skin/internal/control_attributes.h"

#include "ui/skin/control_class.h"
#include "ui/skin/internal/attribute_values.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/text_ui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QToolButton>
#include <QVariant>

#include <algorithm>
#include <array>

namespace tollivar::DuiLib::internal {

namespace {

using namespace Qt::StringLiterals;

bool setName(QWidget &control, const QString &value)
{
    control.setObjectName(value);
    return true;
}

bool setText(QWidget &control, const QString &value)
{
    if (auto *text = qobject_cast<CTextUI *>(&control)) {
        text->setMarkup(value);
    } else if (auto *label = qobject_cast<QLabel *>(&control)) {
        label->setText(value);
    } else if (auto *button = qobject_cast<QAbstractButton *>(&control)) {
        button->setText(value);
    } else if (auto *edit = qobject_cast<QLineEdit *>(&control)) {
        edit->setText(value);
    } else {
        return false;
    }
    return true;
}

bool setToolTip(QWidget &control, const QString &value)
{
    control.setToolTip(value);
    return true;
}

bool setAccess(QWidget &control, const QString &value)
{
    control.setAccessibleName(value);
    return true;
}

/// A word that style sheets select by, as [look="primary"].
bool setLook(QWidget &control, const QString &value)
{
    control.setProperty("look", value);
    return true;
}

template<void (QWidget::*setter)(int)>
bool setLength(QWidget &control, const QString &value)
{
    const auto length = number(value);
    if (length) {
        (control.*setter)(*length);
    }
    return length.has_value();
}

bool setLeastWidth(QWidget &control, const QString &value)
{
    const auto width = number(value);
    if (width && control.property(kLeastWidthProperty).isValid()) {
        control.setProperty(kLeastWidthProperty, *width);
        control.updateGeometry();
    } else if (width) {
        control.setMinimumWidth(*width);
    }
    return width.has_value();
}

template<void (QWidget::*setter)(bool)>
bool setFlag(QWidget &control, const QString &value)
{
    const auto isOn = flag(value);
    if (isOn) {
        (control.*setter)(*isOn);
    }
    return isOn.has_value();
}

bool setVisibility(QWidget &control, const QString &value)
{
    const auto isVisible = flag(value);
    // Shown by its parent; showing it here would show a window of its own.
    if (isVisible == false) {
        control.hide();
    }
    return isVisible.has_value();
}

bool setSelected(QWidget &control, const QString &value)
{
    auto *button = qobject_cast<QAbstractButton *>(&control);
    const auto isOn = flag(value);
    if (button == nullptr || !isOn) {
        return false;
    }
    button->setChecked(*isOn);
    return true;
}

bool setFocusable(QWidget &control, const QString &value)
{
    const auto isOn = flag(value);
    control.setFocusPolicy(isOn.value_or(true) ? Qt::StrongFocus : Qt::NoFocus);
    return isOn.has_value();
}

bool setIcon(QWidget &control, const QString &value)
{
    const QString path = CPaintManagerUI::imagePath(value);
    if (path.isEmpty()) {
        return false;
    }
    const QIcon icon(path);
    if (auto *button = qobject_cast<QAbstractButton *>(&control)) {
        button->setIcon(icon);
        return true;
    }
    auto *label = qobject_cast<QLabel *>(&control);
    if (label == nullptr) {
        return false;
    }
    label->setPixmap(icon.pixmap(label->property("iconSize").toSize(), label->devicePixelRatioF()));
    return true;
}

bool setIconSize(QWidget &control, const QString &value)
{
    const auto wanted = size(value);
    if (!wanted) {
        return false;
    }
    // Also tells a label how large its icon is, which has to be known before the icon.
    control.setProperty("iconSize", *wanted);
    return true;
}

bool setIconPlace(QWidget &control, const QString &value)
{
    auto *button = qobject_cast<QToolButton *>(&control);
    if (button == nullptr) {
        return false;
    }
    if (value == u"only"_s) {
        button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    } else if (value == u"above"_s) {
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    } else if (value == u"beside"_s) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    } else {
        return false;
    }
    return true;
}

bool setPadding(QWidget &control, const QString &value)
{
    const auto padding = margins(value);
    if (control.layout() == nullptr || !padding) {
        return false;
    }
    control.layout()->setContentsMargins(*padding);
    return true;
}

bool setSpacing(QWidget &control, const QString &value)
{
    const auto spacing = number(value);
    if (control.layout() == nullptr || !spacing) {
        return false;
    }
    control.layout()->setSpacing(*spacing);
    return true;
}

bool setAlign(QWidget &control, const QString &value)
{
    auto *label = qobject_cast<QLabel *>(&control);
    const auto where = alignment(value);
    if (label == nullptr || !where) {
        return false;
    }
    label->setAlignment(*where);
    return true;
}

bool setWrap(QWidget &control, const QString &value)
{
    auto *label = qobject_cast<QLabel *>(&control);
    const auto isOn = flag(value);
    if (label == nullptr || !isOn) {
        return false;
    }
    label->setWordWrap(*isOn);
    return true;
}

bool setPlaceholder(QWidget &control, const QString &value)
{
    auto *edit = qobject_cast<QLineEdit *>(&control);
    if (edit == nullptr) {
        return false;
    }
    edit->setPlaceholderText(value);
    return true;
}

bool isForTheBuilder(QWidget & /*control*/, const QString & /*value*/)
{
    return true;
}

struct Attribute {
    QLatin1StringView name;
    bool (*apply)(QWidget &, const QString &) = nullptr;
};

constexpr std::array kAttributes = {
    Attribute{"name"_L1, setName},
    Attribute{"text"_L1, setText},
    Attribute{"tooltip"_L1, setToolTip},
    Attribute{"access"_L1, setAccess},
    Attribute{"look"_L1, setLook},
    Attribute{"width"_L1, setLength<&QWidget::setFixedWidth>},
    Attribute{"height"_L1, setLength<&QWidget::setFixedHeight>},
    Attribute{"minwidth"_L1, setLeastWidth},
    Attribute{"minheight"_L1, setLength<&QWidget::setMinimumHeight>},
    Attribute{"maxwidth"_L1, setLength<&QWidget::setMaximumWidth>},
    Attribute{"enabled"_L1, setFlag<&QWidget::setEnabled>},
    Attribute{"visible"_L1, setVisibility},
    Attribute{"selected"_L1, setSelected},
    Attribute{"focus"_L1, setFocusable},
    Attribute{"icon"_L1, setIcon},
    Attribute{"iconsize"_L1, setIconSize},
    Attribute{"iconplace"_L1, setIconPlace},
    Attribute{"padding"_L1, setPadding},
    Attribute{"spacing"_L1, setSpacing},
    Attribute{"align"_L1, setAlign},
    Attribute{"wrap"_L1, setWrap},
    Attribute{"placeholder"_L1, setPlaceholder},
    // Places of a control in its parent, or of the window.
    Attribute{"stretch"_L1, isForTheBuilder},
    Attribute{"columns"_L1, isForTheBuilder},
    Attribute{"span"_L1, isForTheBuilder},
    Attribute{"buddy"_L1, isForTheBuilder},
};

} // namespace

AttributeResult applyAttribute(QWidget &control, const QString &name, const QString &value)
{
    const auto *found =
        std::find_if(kAttributes.begin(), kAttributes.end(),
                     [&name](const Attribute &attribute) { return attribute.name == name; });
    if (found == kAttributes.end()) {
        return AttributeResult::Unknown;
    }
    return found->apply(control, value) ? AttributeResult::Applied : AttributeResult::Unfit;
}

} // namespace tollivar::DuiLib::internal
