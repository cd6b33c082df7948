#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace tollivar::test {

/// Notes every message box that comes up and presses the same button on each, so that a box that is
/// not expected is told instead of holding the test up.
///
/// Threads: the main thread.
class BoxWatch final : public QObject {
public:
    struct Box {
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        QMessageBox::Icon icon;

        bool operator==(const Box &) const = default;
    };

    /// A box without that button is closed.
    explicit BoxWatch(QMessageBox::StandardButton answer);

    void answerWith(QMessageBox::StandardButton answer) { m_answer = answer; }
    /// Looks at each box before it is answered.
    void onBox(std::function<void(QMessageBox &)> look) { m_look = std::move(look); }
    /// Those that have come so far.
    [[nodiscard]] const std::vector<Box> &boxes() const { return m_boxes; }
    /// Waits until that many have come and been answered; fails the test when they do not.
    void waitForBoxes(std::size_t count) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QMessageBox &box);

    QMessageBox::StandardButton m_answer;
    std::function<void(QMessageBox &)> m_look;
    std::vector<Box> m_boxes;
    std::size_t m_answered = 0;
};

} // namespace tollivar::test
