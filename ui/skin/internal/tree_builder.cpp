#include "ui/skin/internal/tree_builder.h"

#include "ui/skin/internal/attribute_values.h"
#include "ui/skin/internal/control_attributes.h"
#include "ui/skin/internal/control_factory.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QToolButton>
#include <QWidget>

#include <algorithm>
#include <array>

namespace tollivar::DuiLib::internal {

namespace {

using namespace Qt::StringLiterals;

/// Attributes that only the root has.
constexpr std::array kWindowAttributes = {"size"_L1,        "sizebox"_L1, "caption"_L1,
                                          "roundcorner"_L1, "mininfo"_L1, "maxinfo"_L1};

bool isWindowAttribute(const QString &name)
{
    return std::find(kWindowAttributes.begin(), kWindowAttributes.end(), name) !=
           kWindowAttributes.end();
}

/// A combo's items are read with the combo itself.
bool isRead(const SkinElement &child, const SkinElement &parent)
{
    return child.type == u"Item"_s && parent.type == u"Combo"_s;
}

} // namespace

TreeBuilder::TreeBuilder(QString fileName, CPaintManagerUI &manager)
    : m_fileName(std::move(fileName))
    , m_manager(manager)
{
}

QWidget *TreeBuilder::build(const SkinElement &document, QWidget &window)
{
    QWidget *root = buildElement(document, window);
    connectBuddies(*root);
    return root;
}

QWidget *TreeBuilder::buildElement(const SkinElement &element, QWidget &parent)
{
    QWidget *control = makeControl(element, parent, m_manager);
    if (control == nullptr) {
        report(element, u"unknown element %1"_s.arg(element.type));
        return nullptr;
    }
    applyAttributes(element, *control);
    const int columns = std::max(1, number(element.attribute(u"columns")).value_or(1));
    int cell = 0;
    for (const auto &child : element.children) {
        if (isRead(child, element)) {
            continue;
        }
        if (!isContainer(element.type)) {
            report(child, u"%1 holds no other elements"_s.arg(element.type));
            continue;
        }
        if (QWidget *built = buildElement(child, *control)) {
            place(child, columns, *built, *control, cell);
        }
    }
    return control;
}

void TreeBuilder::applyAttributes(const SkinElement &element, QWidget &control)
{
    for (const auto &[name, value] : element.attributes) {
        if (element.type == u"Window"_s && isWindowAttribute(name)) {
            continue;
        }
        switch (applyAttribute(control, name, value)) {
        case AttributeResult::Applied:
            break;
        case AttributeResult::Unknown:
            report(element, u"unknown attribute %1"_s.arg(name));
            break;
        case AttributeResult::Unfit:
            report(element, u"%1=\"%2\" does not fit %3"_s.arg(name, value, element.type));
            break;
        }
    }
    const QString buddy = element.attribute(u"buddy");
    auto *label = qobject_cast<QLabel *>(&control);
    if (label != nullptr && !buddy.isEmpty()) {
        m_buddies.emplace_back(label, buddy);
    }
}

void TreeBuilder::place(const SkinElement &element, int columns, QWidget &control, QWidget &parent,
                        int &cell)
{
    if (auto *tabs = qobject_cast<QStackedWidget *>(&parent)) {
        tabs->addWidget(&control);
    } else if (auto *grid = qobject_cast<QGridLayout *>(parent.layout())) {
        const int span = std::clamp(number(element.attribute(u"span")).value_or(1), 1, columns);
        if (cell % columns + span > columns) {
            cell += columns - cell % columns;
        }
        const int column = cell % columns;
        grid->addWidget(&control, cell / columns, column, 1, span);
        if (const auto stretch = number(element.attribute(u"stretch")); stretch && span == 1) {
            grid->setColumnStretch(column, *stretch);
        }
        if (qobject_cast<QToolButton *>(&control) != nullptr) {
            // As wide as its column, like everything else there.
            control.setSizePolicy(QSizePolicy::Minimum, control.sizePolicy().verticalPolicy());
        }
        cell += span;
    } else if (auto *box = qobject_cast<QBoxLayout *>(parent.layout())) {
        box->addWidget(&control, number(element.attribute(u"stretch")).value_or(0));
    }
}

void TreeBuilder::connectBuddies(QWidget &root)
{
    for (const auto &[label, name] : m_buddies) {
        if (auto *field = root.findChild<QWidget *>(name)) {
            label->setBuddy(field);
            if (field->accessibleName().isEmpty()) {
                field->setAccessibleName(label->text());
            }
        }
    }
}

WindowLook TreeBuilder::windowLook(const SkinElement &document) const
{
    const auto sizeOf = [&](QStringView name, QSize fallback) {
        const QString value = document.attribute(name);
        const auto read = size(value);
        if (!read && !value.isEmpty()) {
            report(document, u"%1=\"%2\" does not fit Window"_s.arg(name, value));
        }
        return read.value_or(fallback);
    };
    const auto marginsOf = [&](QStringView name) {
        const QString value = document.attribute(name);
        const auto read = margins(value);
        if (!read && !value.isEmpty()) {
            report(document, u"%1=\"%2\" does not fit Window"_s.arg(name, value));
        }
        return read.value_or(QMargins());
    };
    WindowLook look;
    look.size = sizeOf(u"size", look.size);
    look.smallest = sizeOf(u"mininfo", {});
    look.largest = sizeOf(u"maxinfo", {});
    look.sizeBox = marginsOf(u"sizebox");
    look.caption = marginsOf(u"caption");
    look.roundCorner = sizeOf(u"roundcorner", {});
    return look;
}

void TreeBuilder::report(const SkinElement &element, const QString &text) const
{
    CPaintManagerUI::addProblem({m_fileName, element.line, text});
}

} // namespace tollivar::DuiLib::internal
