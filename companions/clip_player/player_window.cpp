#include "companions/clip_player/player_window.h"

#include "companions/clip_player/control_bar.h"
#include "companions/clip_player/local_file.h"
#include "companions/clip_player/look.h"
#include "companions/clip_player/media_player.h"
#include "companions/clip_player/message_page.h"
#include "companions/clip_player/picture_view.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QShortcut>
#include <QStackedWidget>

namespace tollivar::player {

using namespace Qt::StringLiterals;

namespace {

constexpr double kSeekStep = 5;
constexpr double kVolumeStep = 5;
const QString kHint = u"Drop a file here, or open one with Ctrl+O."_s;

} // namespace

PlayerWindow::PlayerWindow(MediaPlayer &player)
    : m_player(player)
    , m_pages(new QStackedWidget(this))
    , m_picture(new PictureView(player, this))
    , m_message(new MessagePage(this))
    , m_bar(new ControlBar(this))
{
    constexpr QSize kFirstPicture{960, 540};
    constexpr QSize kSmallest{480, 200};
    constexpr int kHideAfterMs = 2'500;
    resize(kFirstPicture.grownBy({0, 0, 0, m_bar->sizeHint().height()}));
    setMinimumSize(kSmallest);
    setAcceptDrops(true);
    // Else the first button would have the focus, and Space would be its own.
    setFocusPolicy(Qt::StrongFocus);
    setFocus();
    setWindowIcon(look::icon(u"logo"_s));
    m_pages->addWidget(m_message);
    m_pages->addWidget(m_picture);
    m_hideTimer.setSingleShot(true);
    m_hideTimer.setInterval(kHideAfterMs);
    connect(&m_hideTimer, &QTimer::timeout, this, &PlayerWindow::hideBar);
    connectKeys();
    connectControls();
    connect(&m_player, &MediaPlayer::stateChanged, this, &PlayerWindow::showState);
    // The mouse moves over the children, and none of them tells.
    m_picture->setMouseTracking(true);
    m_message->setMouseTracking(true);
    qApp->installEventFilter(this);
    showState();
}

PlayerWindow::~PlayerWindow() = default;

void PlayerWindow::connectKeys()
{
    const auto on = [this](const QKeySequence &keys, auto &&act) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, act);
    };
    on(Qt::Key_Space, [this] { m_player.togglePlaying(); });
    on(Qt::Key_Left, [this] { m_player.seekBy(-kSeekStep); });
    on(Qt::Key_Right, [this] { m_player.seekBy(kSeekStep); });
    on(Qt::Key_Up, [this] { m_player.changeVolume(kVolumeStep); });
    on(Qt::Key_Down, [this] { m_player.changeVolume(-kVolumeStep); });
    on(Qt::Key_M, [this] { m_player.toggleMuted(); });
    on(Qt::Key_F, [this] { toggleFullScreen(); });
    on(Qt::Key_Escape, [this] { leaveFullScreen(); });
    on(Qt::CTRL | Qt::Key_O, [this] { askForFile(); });
    on(Qt::CTRL | Qt::Key_Q, [this] { close(); });
}

void PlayerWindow::connectControls()
{
    connect(m_bar, &ControlBar::playWanted, &m_player, &MediaPlayer::togglePlaying);
    connect(m_bar, &ControlBar::positionWanted, &m_player, &MediaPlayer::seekTo);
    connect(m_bar, &ControlBar::muteWanted, &m_player, &MediaPlayer::toggleMuted);
    connect(m_bar, &ControlBar::volumeWanted, &m_player, &MediaPlayer::setVolume);
    connect(m_bar, &ControlBar::openWanted, this, &PlayerWindow::askForFile);
    connect(m_bar, &ControlBar::fullScreenWanted, this, &PlayerWindow::toggleFullScreen);
}

void PlayerWindow::open(const QString &name)
{
    const auto path = playableFile(name);
    m_refusal = path ? QString() : path.error().text;
    if (path) {
        m_player.open(*path);
    } else {
        m_player.close();
    }
}

void PlayerWindow::showState()
{
    const PlayerState &state = m_player.state();
    const QString name = shownName(state.path);
    m_bar->showState(state);
    setWindowTitle(state.status == PlayerStatus::Loaded ? name : u"ClipPlayer"_s);
    if (!m_refusal.isEmpty()) {
        m_message->tell(u"broken"_s, m_refusal, kHint);
    } else if (state.status == PlayerStatus::Failed) {
        m_message->tell(u"broken"_s,
                        u"“%1” cannot be played: it is damaged, or of an unknown kind."_s.arg(name),
                        kHint);
    } else if (state.status == PlayerStatus::Empty) {
        m_message->tell(u"film"_s, u"Nothing is open."_s, kHint);
    } else if (state.status == PlayerStatus::Loaded && !state.hasPicture) {
        m_message->tell(u"music"_s, name, {});
    }
    // While a file is being looked at, what was there stays: it takes a moment only.
    if (!m_refusal.isEmpty() || state.status != PlayerStatus::Loading) {
        const bool hasPicture =
            m_refusal.isEmpty() && state.status == PlayerStatus::Loaded && state.hasPicture;
        m_pages->setCurrentWidget(hasPicture ? static_cast<QWidget *>(m_picture) : m_message);
    }
}

void PlayerWindow::askForFile()
{
    auto *dialog = new QFileDialog(this, u"Open a file"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    if (!m_player.state().path.isEmpty()) {
        dialog->setDirectory(QFileInfo(m_player.state().path).path());
    }
    connect(dialog, &QFileDialog::fileSelected, this, &PlayerWindow::open);
    dialog->open();
}

void PlayerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedFile(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void PlayerWindow::dropEvent(QDropEvent *event)
{
    const QString path = draggedFile(*event->mimeData());
    if (!path.isEmpty()) {
        event->acceptProposedAction();
        open(path);
    }
}

void PlayerWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void PlayerWindow::leaveFullScreen()
{
    setWindowState(windowState() & ~Qt::WindowFullScreen);
}

void PlayerWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange) {
        m_bar->showFullScreen(isFullScreen());
        placeControls();
        revealBar();
    }
    QWidget::changeEvent(event);
}

void PlayerWindow::resizeEvent(QResizeEvent * /*event*/)
{
    placeControls();
}

void PlayerWindow::placeControls()
{
    const int barHeight = m_bar->sizeHint().height();
    m_bar->setGeometry(0, height() - barHeight, width(), barHeight);
    m_pages->setGeometry(0, 0, width(), isFullScreen() ? height() : height() - barHeight);
}

bool PlayerWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::KeyPress) {
        revealBar();
    }
    if (event->type() == QEvent::MouseButtonDblClick &&
        (watched == m_picture || watched == m_message)) {
        toggleFullScreen();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void PlayerWindow::revealBar()
{
    m_bar->show();
    m_bar->raise();
    unsetCursor();
    if (isFullScreen()) {
        m_hideTimer.start();
    } else {
        m_hideTimer.stop();
    }
}

void PlayerWindow::hideBar()
{
    const bool isInUse = m_bar->underMouse() || m_bar->isAncestorOf(focusWidget());
    if (isInUse || m_pages->currentWidget() != m_picture) {
        m_hideTimer.start();
        return;
    }
    m_bar->hide();
    setCursor(Qt::BlankCursor);
}

} // namespace tollivar::player
