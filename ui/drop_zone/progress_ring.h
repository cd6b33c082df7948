#pragma once

#include <QWidget>

#include <optional>

namespace tollivar::ui {

/// A ring that fills clockwise from the top; lies over the whole of its parent and lets every click
/// through. Its colour is the style sheet's `color`.
///
/// Threads: the main thread.
class ProgressRing final : public QWidget {
    Q_OBJECT

public:
    explicit ProgressRing(QWidget &parent);

    /// From 0 to 1; nothing takes the ring away.
    void setShare(std::optional<double> share);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_share = 0;
};

} // namespace tollivar::ui
