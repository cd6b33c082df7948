#pragma once

#include "ui/dialog/dialog_texts.h"
#include "ui/dialog/ui_lib_dialog.h"

#include <QRect>
#include <QString>

#include <chrono>

class QTimer;

namespace tollivar::ui {

/// How a popup comes and goes.
struct NotifyTimes {
    std::chrono::milliseconds slideIn{800};
    std::chrono::milliseconds stay{3'000};
    std::chrono::milliseconds slideOut{800};
    int step = 4; ///< pixels, from 1
};

/// The popup that tells of a finished download: slides up from the lower right corner of the work
/// area, stays a while, longer as long as the mouse is over it, and slides out. Several stand above
/// and beside one another. It never takes the focus.
///
/// Threads: the main thread.
/// Owns:    itself: closing it destroys it.
class CTaskNotifyDlg final : public CUILibDialog {
    Q_OBJECT

public:
    struct File {
        QString folder; ///< with its trailing separator
        QString name;
        QString type;

        [[nodiscard]] QString path() const { return folder + name + type; }
    };

    CTaskNotifyDlg(File file, const DialogTexts &texts);
    ~CTaskNotifyDlg() override;
    CTaskNotifyDlg(const CTaskNotifyDlg &) = delete;
    CTaskNotifyDlg &operator=(const CTaskNotifyDlg &) = delete;

    /// Slides in, above the popups that are there.
    void showFor(const NotifyTimes &times);

    /// The popup that was opened last and is still open; null when there is none.
    [[nodiscard]] static CTaskNotifyDlg *newest();
    [[nodiscard]] CTaskNotifyDlg *older() const { return m_older; }
    static void closeAll();

    void Notify(const DuiLib::SkinEvent &event) override;

Q_SIGNALS:
    void playWanted(const QString &path);
    /// The folder, with the file selected if it is there.
    void folderWanted(const QString &path);
    void conversionWanted(const QString &path);

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void slideIn();
    void slideOut();
    void startSliding(std::chrono::milliseconds time);
    void moveTo(int top);
    /// The lowest place that no open popup has.
    [[nodiscard]] static int freePlace();

    File m_file;
    NotifyTimes m_times;
    QRect m_rest; ///< where it stands between its slides
    QTimer *m_tick = nullptr;
    QTimer *m_stay = nullptr;
    CTaskNotifyDlg *m_older = nullptr;
    int m_place = 0;
};

} // namespace tollivar::ui
