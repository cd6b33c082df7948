#include "tests/support/window_driver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <memory>

namespace tollivar::test {

void click(QWidget &widget)
{
    clickAt(widget, widget.rect().center());
}

void clickAt(QWidget &widget, QPoint position, Qt::MouseButton button)
{
    QTest::mouseClick(&widget, button, Qt::NoModifier, position);
}

void type(QWidget &widget, const QString &text)
{
    widget.setFocus();
    QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) {
        QTest::keyClick(&widget, Qt::Key_Delete);
    } else {
        QTest::keyClicks(&widget, text);
    }
}

void press(QWidget &widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(&widget, key, modifiers);
}

void whenModalOpens(std::function<void(QWidget &)> answer)
{
    auto *poll = new QTimer(qApp);
    auto waited = std::make_shared<QElapsedTimer>();
    waited->start();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, waited, answer = std::move(answer)] {
        QWidget *window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isVisible()) {
            if (waited->hasExpired(10'000)) {
                poll->deleteLater();
                FAIL() << "no modal window opened";
            }
            return;
        }
        poll->stop();
        poll->deleteLater();
        answer(*window);
    });
    poll->start(5);
}

} // namespace tollivar::test
