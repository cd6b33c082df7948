#pragma once

#include <QTimer>
#include <QWidget>

class QStackedWidget;

namespace tollivar::player {

class ControlBar;
class MediaPlayer;
class MessagePage;
class PictureView;

/// The player's window: the picture, or a sentence in its place, over the row of controls. In full
/// screen the row comes when the mouse moves or the keyboard is in it, and goes again.
///
/// Threads: the main thread.
/// Owns:    its controls; borrows the player, which must live longer.
class PlayerWindow final : public QWidget {
    Q_OBJECT

public:
    explicit PlayerWindow(MediaPlayer &player);
    ~PlayerWindow() override;
    PlayerWindow(const PlayerWindow &) = delete;
    PlayerWindow &operator=(const PlayerWindow &) = delete;

    /// Plays what a person or another program names; what cannot be played becomes a sentence in
    /// the window.
    void open(const QString &name);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectKeys();
    void connectControls();
    void showState();
    void askForFile();
    void toggleFullScreen();
    void leaveFullScreen();
    void placeControls();
    void revealBar();
    void hideBar();

    MediaPlayer &m_player;
    QString m_refusal; ///< why the last file was not even tried
    QStackedWidget *m_pages;
    PictureView *m_picture;
    MessagePage *m_message;
    ControlBar *m_bar;
    QTimer m_hideTimer;
};

} // namespace tollivar::player
