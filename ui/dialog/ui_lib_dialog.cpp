#include "ui/dialog/ui_lib_dialog.h"

#include "ui/dialog/round_corners.h"
#include "ui/dialog/window_frame.h"
#include "ui/skin/text_ui.h"
#include "ui/skin/window_ctrl_ui.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace tollivar::ui {

namespace {

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
    prepareRoundCorners(*this);
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
    m_frame = new WindowFrame(*this, m_manager);
    connect(m_frame, &WindowFrame::captionDoubleClicked, this, &CUILibDialog::toggleMaximised);
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

void CUILibDialog::learnPlace()
{
    m_frame->learnPlace();
}

void CUILibDialog::setLeastSize(QSize least)
{
    m_leastSize = least;
    layout()->setSizeConstraint(QLayout::SetNoConstraint);
    applyLeastSize();
}

void CUILibDialog::applyLeastSize()
{
    const QSize least = layout()->totalMinimumSize().expandedTo(m_leastSize);
    if (least == minimumSize()) {
        return;
    }
    if (least.width() > width() || least.height() > height()) {
        learnPlace();
    }
    setMinimumSize(least);
}

void CUILibDialog::toggleMaximised()
{
    if (isMaximized()) {
        showNormal();
    } else {
        showMaximized();
    }
}

bool CUILibDialog::holds(const QObject &object) const
{
    const auto *widget = qobject_cast<const QWidget *>(&object);
    return widget != nullptr && widget->window() == this;
}

bool CUILibDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && !m_leastSize.isEmpty() && holds(*watched)) {
        // The window itself is not told of every change inside. What it comes to is known only
        // after the event.
        QMetaObject::invokeMethod(this, &CUILibDialog::applyLeastSize, Qt::QueuedConnection);
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
        return false;
    }
    return holds(*watched) && isSwallowed(*static_cast<QKeyEvent *>(event));
}

void CUILibDialog::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_frame != nullptr) {
        // By now the window manager has put it where it is; what opens over it goes by that.
        learnPlace();
    }
    if (event->type() != QEvent::WindowStateChange) {
        return;
    }
    restyleCorners();
    clip();
    if (isMaximized()) {
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

void CUILibDialog::clip()
{
    QRegion shown = windowOutline(*this, m_manager.GetRoundCorner());
    if (m_shownPart) {
        shown &= *m_shownPart;
    }
    setWindowShape(*this, shown);
}

void CUILibDialog::restyleCorners()
{
    static constexpr auto kProperty = "maximised";
    if (property(kProperty).toBool() == isMaximized()) {
        return;
    }
    setProperty(kProperty, isMaximized());
    // Style sheets look at a property again only when told so.
    const auto inside = findChildren<QWidget *>();
    for (QWidget *widget : inside) {
        if (!DuiLib::CPaintManagerUI::GetClass(*widget).isEmpty()) {
            widget->style()->unpolish(widget);
            widget->style()->polish(widget);
        }
    }
}

} // namespace tollivar::ui
