#pragma once

#include <QString>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace tollivar::test {

/// Does what a person does to windows: finds controls by name, clicks, types, answers what opens.
///
/// Threads: the main thread.

/// The control of that name inside `window`; the case fails and null comes back without one.
template<typename Control = QWidget>
[[nodiscard]] Control *control(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    EXPECT_NE(found, nullptr) << "no control named " << name.toStdString();
    return found;
}

void click(QWidget &widget);
void clickAt(QWidget &widget, QPoint position, Qt::MouseButton button = Qt::LeftButton);
/// Replaces the text of an edit field by typed keys.
void type(QWidget &widget, const QString &text);
void press(QWidget &widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

/// Runs `answer` on the next modal window once it is open; call it before what opens the window.
/// The case fails when none opens within ten seconds.
void whenModalOpens(std::function<void(QWidget &)> answer);

} // namespace tollivar::test
