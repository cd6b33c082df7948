#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace tollivar::ui {

/// What an empty list says in its middle: how a task begins, and the button that begins one; or,
/// where other tasks are hidden, that none is shown.
///
/// Threads: the main thread.
class EmptyHint final : public QWidget {
    Q_OBJECT

public:
    explicit EmptyHint(QWidget *parent);

    void setTexts(const QString &hint, const QString &button);
    /// Without a button.
    void setText(const QString &hint);
    /// Moves to the middle of its parent.
    void center();

Q_SIGNALS:
    void addWanted();

private:
    QLabel *m_text = nullptr;
    QToolButton *m_button = nullptr;
};

} // namespace tollivar::ui
