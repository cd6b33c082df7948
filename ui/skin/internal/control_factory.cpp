#include "ui/skin/internal/control_factory.h"

#include "ui/skin/control_class.h"
#include "ui/skin/internal/attribute_values.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/text_ui.h"
#include "ui/skin/window_ctrl_ui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QRadioButton>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>
#include <array>

namespace tollivar::DuiLib::internal {

namespace {

using namespace Qt::StringLiterals;

/// A control that a skin can make wider than its text, but not narrower.
template<typename Control>
class NeverNarrow final : public Control {
public:
    explicit NeverNarrow(QWidget *parent) : Control(parent)
    {
        this->setProperty(kLeastWidthProperty, 0);
    }
    [[nodiscard]] QSize sizeHint() const override { return grown(Control::sizeHint()); }
    [[nodiscard]] QSize minimumSizeHint() const override
    {
        return grown(Control::minimumSizeHint());
    }

private:
    [[nodiscard]] QSize grown(QSize size) const
    {
        return size.expandedTo({this->property(kLeastWidthProperty).toInt(), size.height()});
    }
};

/// Connects one signal of a control with one kind of event.
template<typename Control, typename Signal>
void notifyOn(Control &control, Signal signal, QLatin1StringView event, CPaintManagerUI &manager)
{
    QObject::connect(&control, signal, &control, [&control, event, &manager] {
        manager.SendNotify({event, control.objectName(), &control});
    });
}

template<typename Layout>
QWidget *makeBox(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI & /*manager*/)
{
    auto *box = new QWidget(&parent);
    auto *layout = new Layout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    // Style sheets paint the background of a plain widget only when told so.
    box->setAttribute(Qt::WA_StyledBackground);
    return box;
}

QWidget *makeColumn(const SkinElement &element, QWidget &parent, CPaintManagerUI &manager)
{
    return element.attribute(u"columns").isEmpty() ? makeBox<QVBoxLayout>(element, parent, manager)
                                                   : makeBox<QGridLayout>(element, parent, manager);
}

QWidget *makeTabs(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI &manager)
{
    auto *tabs = new QStackedWidget(&parent);
    notifyOn(*tabs, &QStackedWidget::currentChanged, events::kSwitch, manager);
    return tabs;
}

QToolButton *makeToolButton(QWidget &parent, CPaintManagerUI &manager)
{
    auto *button = new NeverNarrow<QToolButton>(&parent);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    notifyOn(*button, &QToolButton::clicked, events::kClick, manager);
    return button;
}

QWidget *makeButton(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI &manager)
{
    return makeToolButton(parent, manager);
}

QWidget *makeOption(const SkinElement &element, QWidget &parent, CPaintManagerUI &manager)
{
    QAbstractButton *option = nullptr;
    if (element.attribute(u"look") == u"radio"_s) {
        option = new QRadioButton(&parent);
        notifyOn(*option, &QAbstractButton::clicked, events::kClick, manager);
    } else {
        option = makeToolButton(parent, manager);
        option->setCheckable(true);
        option->setAutoExclusive(true);
    }
    notifyOn(*option, &QAbstractButton::toggled, events::kSelectChanged, manager);
    return option;
}

QWidget *makeCheckBox(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI &manager)
{
    auto *box = new QCheckBox(&parent);
    notifyOn(*box, &QCheckBox::clicked, events::kClick, manager);
    notifyOn(*box, &QCheckBox::toggled, events::kSelectChanged, manager);
    return box;
}

QWidget *makeText(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI &manager)
{
    auto *text = new CTextUI(&parent);
    notifyOn(*text, &CTextUI::linkClicked, events::kLink, manager);
    return text;
}

QWidget *makeLabel(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI & /*manager*/)
{
    auto *label = new NeverNarrow<QLabel>(&parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QWidget *makeEdit(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI &manager)
{
    auto *edit = new QLineEdit(&parent);
    notifyOn(*edit, &QLineEdit::textChanged, events::kTextChanged, manager);
    return edit;
}

QWidget *makeCombo(const SkinElement &element, QWidget &parent, CPaintManagerUI &manager)
{
    auto *combo = new QComboBox(&parent);
    // The style's own popup ignores the style sheet.
    combo->setView(new QListView(combo));
    for (const auto &item : element.children) {
        combo->addItem(item.attribute(u"text"));
    }
    notifyOn(*combo, &QComboBox::activated, events::kItemSelect, manager);
    return combo;
}

QWidget *makeProgress(const SkinElement & /*element*/, QWidget &parent,
                      CPaintManagerUI & /*manager*/)
{
    auto *bar = new QProgressBar(&parent);
    bar->setTextVisible(false);
    return bar;
}

QWidget *makeHost(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI & /*manager*/)
{
    return new CWindowCtrlUI(&parent);
}

QWidget *makeSpacer(const SkinElement & /*element*/, QWidget &parent, CPaintManagerUI & /*manager*/)
{
    auto *spacer = new QWidget(&parent);
    spacer->setAttribute(Qt::WA_StyledBackground);
    return spacer;
}

struct ElementKind {
    QLatin1StringView type;
    QLatin1StringView className;
    QWidget *(*make)(const SkinElement &, QWidget &, CPaintManagerUI &) = nullptr;
    bool isContainer = false;
};

constexpr std::array kKinds = {
    ElementKind{"Window"_L1, "WindowUI"_L1, makeBox<QVBoxLayout>, true},
    ElementKind{"VerticalLayout"_L1, "VerticalLayoutUI"_L1, makeColumn, true},
    ElementKind{"HorizontalLayout"_L1, "HorizontalLayoutUI"_L1, makeBox<QHBoxLayout>, true},
    ElementKind{"TabLayout"_L1, "TabLayoutUI"_L1, makeTabs, true},
    ElementKind{"Container"_L1, "ContainerUI"_L1, makeColumn, true},
    ElementKind{"Button"_L1, kButtonClass, makeButton, false},
    ElementKind{"Option"_L1, kOptionClass, makeOption, false},
    ElementKind{"Text"_L1, kTextClass, makeText, false},
    ElementKind{"Label"_L1, "LabelUI"_L1, makeLabel, false},
    ElementKind{"Edit"_L1, "EditUI"_L1, makeEdit, false},
    ElementKind{"CheckBox"_L1, "CheckBoxUI"_L1, makeCheckBox, false},
    ElementKind{"Combo"_L1, "ComboUI"_L1, makeCombo, false},
    ElementKind{"Progress"_L1, "ProgressUI"_L1, makeProgress, false},
    ElementKind{"WindowCtrl"_L1, "WindowCtrlUI"_L1, makeHost, false},
    ElementKind{"Control"_L1, "ControlUI"_L1, makeSpacer, false},
};

const ElementKind *kindOf(QStringView type)
{
    const auto *found = std::find_if(kKinds.begin(), kKinds.end(),
                                     [type](const ElementKind &kind) { return kind.type == type; });
    return found == kKinds.end() ? nullptr : found;
}

} // namespace

QWidget *makeControl(const SkinElement &element, QWidget &parent, CPaintManagerUI &manager)
{
    const ElementKind *kind = kindOf(element.type);
    if (kind == nullptr) {
        return nullptr;
    }
    QWidget *control = kind->make(element, parent, manager);
    control->setProperty(kClassProperty, QString(kind->className));
    return control;
}

bool isContainer(QStringView type)
{
    const ElementKind *kind = kindOf(type);
    return kind != nullptr && kind->isContainer;
}

bool isMadeAs(const QWidget &control, QLatin1StringView type, OptionLook look)
{
    const ElementKind *kind = kindOf(QString(type));
    if (kind == nullptr || CPaintManagerUI::GetClass(control) != kind->className) {
        return false;
    }
    return look == OptionLook::Any || qobject_cast<const QRadioButton *>(&control) == nullptr;
}

} // namespace tollivar::DuiLib::internal
