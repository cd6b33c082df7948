#pragma once

#include "ui/skin/paint_manager.h"
#include "ui/skin/skin_document.h"

#include <QString>

#include <utility>
#include <vector>

class QLabel;
class QWidget;

namespace tollivar::DuiLib::internal {

/// Turns one read skin file into widgets.
///
/// Threads: the main thread.
/// Owns:    no widget: each belongs to its parent, the root to the window. The manager, which the
///          controls tell their events, is borrowed and must outlive them.
/// States:  one build() of a document whose root is a Window; windowLook() at any time.
/// Errors:  what a file names and nobody knows is left out, and becomes one of the skin's problems
///          (CPaintManagerUI::takeProblems()) with file and line.
class TreeBuilder {
public:
    TreeBuilder(QString fileName, CPaintManagerUI &manager);

    /// The root's widget, a child of `window`.
    [[nodiscard]] QWidget *build(const SkinElement &document, QWidget &window);
    /// The attributes of the root that concern the window as a whole.
    [[nodiscard]] WindowLook windowLook(const SkinElement &document) const;

private:
    QWidget *buildElement(const SkinElement &element, QWidget &parent);
    void applyAttributes(const SkinElement &element, QWidget &control);
    /// Puts a control into its parent's layout; `cell` counts the cells of a grid.
    static void place(const SkinElement &element, int columns, QWidget &control, QWidget &parent,
                      int &cell);
    void connectBuddies(QWidget &root);
    void report(const SkinElement &element, const QString &text) const;

    QString m_fileName;
    CPaintManagerUI &m_manager;
    std::vector<std::pair<QLabel *, QString>> m_buddies;
};

} // namespace tollivar::DuiLib::internal
