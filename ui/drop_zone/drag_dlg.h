#pragma once

#include "platform/message_port.h"
#include "ui/dialog/ui_lib_dialog.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

class QMimeData;
class QTimer;

namespace tollivar::ui {

class DropHint;
class ProgressRing;

/// The small window that always floats: takes a dropped link, and watches the clipboard for watch
/// pages of the video-sharing site that other programs copy. While something hovers that it takes,
/// it says so. What it receives it announces to the main window, which reads receivedText().
///
/// Threads: the main thread.
class CDragDlg final : public CUILibDialog {
    Q_OBJECT

public:
    /// A text in the current language, by its id.
    using Text = std::function<QString(const QString &id)>;

    // The first value of an announcement.
    static constexpr std::uint64_t kDropped = 0;
    static constexpr std::uint64_t kFromClipboard = 1;

    /// Announcements go to `owner`, as AddressReady.
    CDragDlg(platform::AppMessagePort owner, Text text);

    /// With monitoring off the clipboard is never looked at.
    void setMonitoring(bool isOn) { m_isMonitoring = isOn; }
    /// It has no caption; screen readers and window lists tell it by its title.
    void applyLanguage();
    /// How far all downloads together are, from 0 to 1; nothing while there are none.
    void setProgress(std::optional<double> share);
    [[nodiscard]] const QString &receivedText() const { return m_receivedText; }

    void Notify(const DuiLib::SkinEvent &event) override;

Q_SIGNALS:
    /// A person has moved it, and let go of it a moment ago.
    void moveEnded(QPoint place);
    void doubleClicked();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void watchClipboard();
    void showHovered(bool isHovered);

    platform::AppMessagePort m_owner;
    Text m_text;
    DropHint *m_hint = nullptr;
    ProgressRing *m_ring = nullptr;
    QString m_receivedText;
    QTimer *m_moveEnd = nullptr;
    bool m_isMonitoring = false;
};

/// The address that a copied text brings: its first line, if that is a watch page with a video.
/// Empty when it brings none.
[[nodiscard]] QString watchPageIn(const QString &copied);

/// Whether dropped data is plain text and no file.
[[nodiscard]] bool isDroppedText(const QMimeData &data);

} // namespace tollivar::ui
