#pragma once

#include <QWidget>

class QLabel;

namespace tollivar::player {

/// A page with an icon, one sentence and a quieter hint, in the middle. Texts are shown as they
/// stand: no mark-up, no links.
///
/// Threads: the main thread.
class MessagePage final : public QWidget {
    Q_OBJECT

public:
    explicit MessagePage(QWidget *parent);

    /// `icon` as look::icon() names it.
    void tell(const QString &icon, const QString &sentence, const QString &hint);

private:
    QLabel *m_icon;
    QLabel *m_sentence;
    QLabel *m_hint;
};

} // namespace tollivar::player
