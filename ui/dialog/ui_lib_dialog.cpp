#include "ui/dialog/ui_lib_dialog.h"

#include "platform/compositor.h"
#include "ui/dialog/window_frame.h"
#include "ui/skin/text_ui.h"
#include "ui/skin/window_ctrl_ui.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainterPath>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace tollivar::ui {

namespace {

bool canBeTransparent()
{
    static const bool can = QGuiApplication::platformName() == QStringLiteral("xcb")
                                ? platform::isDisplayComposited()
                                : QGuiApplication::platformName() != QStringLiteral("offscreen");
    return can;
}

bool isSwallowed(const QKeyEvent &event)
{
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return isEnter || (event.key() == Qt::Key_Escape && event.type() == QEvent::KeyPress);
}

/// How long a window manager may take to maximise a window before it counts as missing.
constexpr std::chrono::milliseconds kWindowManagerPatience{150};

} // namespace

CUILibDialog::CUILibDialog(QWidget *owner, Qt::WindowFlags kind)
    : QDialog(owner, kind | Qt::FramelessWindowHint)
{
    if (canBeTransparent()) {
        setAttribute(Qt::WA_TranslucentBackground);
    }
    m_manager.Init(*this);
    // Keys are taken before any control of the window sees them.
    qApp->installEventFilter(this);
}

CUILibDialog::~CUILibDialog() = default;

void CUILibDialog::createFace(const QString &skinFile,
                              std::span<const DuiLib::RequiredControl> required)
{
    DuiLib::CDialogBuilder::Create(skinFile, required, *this, m_manager);
    m_manager.AddNotifier(*this);
    resize(m_manager.GetInitSize());
    if (auto *caption =
            qobject_cast<DuiLib::CTextUI *>(m_manager.FindControl(QStringLiteral("textCaption")))) {
        setWindowTitle(caption->accessibleName());
    }
    auto *frame = new WindowFrame(*this, m_manager);
    connect(frame, &WindowFrame::captionDoubleClicked, this, &CUILibDialog::toggleMaximised);
    layout()->activate();
    m_manager.SendNotify({DuiLib::events::kWindowInit, {}, this});
}

HitArea CUILibDialog::hitTestAt(QPoint position) const
{
    return hitTest(m_manager, position, size(), isMaximized());
}

bool CUILibDialog::bindNativeChild(const QString &placeholder, QWidget &child)
{
    auto *host = qobject_cast<DuiLib::CWindowCtrlUI *>(m_manager.FindControl(placeholder));
    if (host == nullptr) {
        return false;
    }
    host->AttachHostWindow(child);
    return true;
}

void CUILibDialog::toggleMaximised()
{
    if (isMaximized()) {
        showNormal();
    } else {
        showMaximized();
    }
}

bool CUILibDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
        return false;
    }
    const auto *widget = qobject_cast<QWidget *>(watched);
    return widget != nullptr && widget->window() == this &&
           isSwallowed(*static_cast<QKeyEvent *>(event));
}

void CUILibDialog::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMaximized()) {
        QTimer::singleShot(kWindowManagerPatience, this, &CUILibDialog::fillWorkArea);
    }
}

void CUILibDialog::fillWorkArea()
{
    // Without a window manager the state changes and nothing else does.
    if (isMaximized() && geometry() != screen()->availableGeometry()) {
        setGeometry(screen()->availableGeometry());
    }
}

void CUILibDialog::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (!isMinimized()) {
        clip();
    }
}

void CUILibDialog::showEvent(QShowEvent *event)
{
    if (!std::exchange(m_isPlaced, true)) {
        placeOverOwner();
    }
    QDialog::showEvent(event);
}

void CUILibDialog::placeOverOwner()
{
    const QWidget *owner = parentWidget() == nullptr ? nullptr : parentWidget()->window();
    if (owner == nullptr || !owner->isVisible() || owner->isMinimized()) {
        return;
    }
    const QRect area = owner->screen()->availableGeometry();
    QRect place(QPoint(), size());
    place.moveCenter(owner->geometry().center());
    place.moveRight(std::min(place.right(), area.right()));
    place.moveBottom(std::min(place.bottom(), area.bottom()));
    move(std::max(place.left(), area.left()), std::max(place.top(), area.top()));
}

void CUILibDialog::showOnly(const QRect &part)
{
    m_shownPart = part;
    clip();
}

QRegion CUILibDialog::outline() const
{
    const QSize corner = m_manager.GetRoundCorner();
    if (testAttribute(Qt::WA_TranslucentBackground) || corner.isNull()) {
        return {rect()};
    }
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), corner.width(), corner.height());
    return {path.toFillPolygon().toPolygon()};
}

void CUILibDialog::clip()
{
    QRegion shown = outline();
    if (m_shownPart) {
        shown &= *m_shownPart;
    }
    if (shown == QRegion(rect())) {
        clearMask();
    } else {
        // An empty mask would be none.
        setMask(shown.isEmpty() ? QRegion(-1, -1, 1, 1) : shown);
    }
}

} // namespace tollivar::ui
