#pragma once

#include <QSlider>

#include <functional>

namespace tollivar::player {

/// A flat slider: a click takes it there at once, dragging follows the mouse, arrows step. What the
/// person does to it is told by `moved`, what the program sets is not.
///
/// Threads: the main thread.
class BarSlider final : public QSlider {
    Q_OBJECT

public:
    /// Text for the value under the mouse, shown in place of the tool tip; empty for the tool tip.
    using HintText = std::function<QString(int value)>;

    explicit BarSlider(QWidget *parent = nullptr);

    void setHintText(HintText hintText) { m_hintText = std::move(hintText); }
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void moved(int value);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] int valueAt(int x) const;
    [[nodiscard]] qreal handleX() const;

    HintText m_hintText;
};

} // namespace tollivar::player
