#include "ui/dialog/window_frame.h"

#include "platform/window_place.h"

#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

namespace tollivar::ui {

namespace {

Qt::CursorShape cursorFor(const HitArea &area)
{
    if (area.kind != HitArea::Kind::Edge) {
        return Qt::ArrowCursor;
    }
    const Qt::Edges edges = area.edges;
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
        return Qt::SizeBDiagCursor;
    }
    return edges == Qt::LeftEdge || edges == Qt::RightEdge ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

/// The rectangle with the dragged edges moved, no smaller than allowed.
QRect resized(QRect rectangle, Qt::Edges edges, QPoint by, QSize smallest)
{
    if (edges.testFlag(Qt::LeftEdge)) {
        rectangle.setLeft(
            std::min(rectangle.left() + by.x(), rectangle.right() - smallest.width() + 1));
    }
    if (edges.testFlag(Qt::RightEdge)) {
        rectangle.setRight(
            std::max(rectangle.right() + by.x(), rectangle.left() + smallest.width() - 1));
    }
    if (edges.testFlag(Qt::TopEdge)) {
        rectangle.setTop(
            std::min(rectangle.top() + by.y(), rectangle.bottom() - smallest.height() + 1));
    }
    if (edges.testFlag(Qt::BottomEdge)) {
        rectangle.setBottom(
            std::max(rectangle.bottom() + by.y(), rectangle.top() + smallest.height() - 1));
    }
    return rectangle;
}

} // namespace

WindowFrame::WindowFrame(QDialog &window, const DuiLib::CPaintManagerUI &manager)
    : QObject(&window)
    , m_window(window)
    , m_manager(manager)
{
    // Presses are watched on the native window: there they come before any control sees them.
    m_window.winId();
    m_native = m_window.windowHandle();
    m_native->installEventFilter(this);
}

bool WindowFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_native) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return handlePress(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return handleMove(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonDblClick:
        return handleDoubleClick(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease: {
        const bool wasOurs = m_isDragging || m_pressed.kind == HitArea::Kind::Edge;
        m_pressed = {};
        m_isDragging = false;
        return wasOurs;
    }
    default:
        return false;
    }
}

HitArea WindowFrame::areaAt(QPoint position) const
{
    return hitTest(m_manager, position, m_window.size(), m_window.isMaximized());
}

bool WindowFrame::handlePress(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton) {
        return false;
    }
    m_pressed = areaAt(event.position().toPoint());
    m_pressPlace = event.globalPosition().toPoint();
    m_pressGeometry = m_window.geometry();
    m_isDragging = false;
    if (m_pressed.kind != HitArea::Kind::Client) {
        correctPlace((event.globalPosition() - event.position()).toPoint());
    }
    if (m_pressed.kind != HitArea::Kind::Edge) {
        return false;
    }
    if (m_native->startSystemResize(m_pressed.edges)) {
        m_pressed = {};
    }
    return true;
}

void WindowFrame::correctPlace(QPoint actual)
{
    // Between pixels of the screen and of the window.
    constexpr int kRounding = 2;
    // A window manager moves a window about while it takes it over, and the last of these moves can
    // go unheard. The window manager's own move begins where we say: from a wrong place it throws
    // the window off the screen.
    if ((m_native->position() - actual).manhattanLength() > kRounding) {
        m_native->setPosition(actual);
        m_pressGeometry.moveTopLeft(actual);
    }
}

void WindowFrame::learnPlace()
{
    const bool canBeWrong = QGuiApplication::platformName() == QStringLiteral("xcb");
    if (!canBeWrong || m_native.isNull() || !m_window.isVisible() || m_window.isMaximized()) {
        return;
    }
    const auto place = platform::windowPlace(static_cast<std::uint32_t>(m_native->winId()));
    if (!place) {
        return;
    }
    // Screens begin at the same place in their own pixels and in the window's.
    const QPoint screen = m_native->screen()->geometry().topLeft();
    const QPoint inside = ((*place - screen).toPointF() / m_native->devicePixelRatio()).toPoint();
    correctPlace(screen + inside);
}

bool WindowFrame::handleMove(const QMouseEvent &event)
{
    if (event.buttons() == Qt::NoButton) {
        showCursor(areaAt(event.position().toPoint()));
        return false;
    }
    if (m_pressed.kind == HitArea::Kind::Client || !event.buttons().testFlag(Qt::LeftButton)) {
        return false;
    }
    const QPoint place = event.globalPosition().toPoint();
    // Asked for earlier, the window manager's own move would swallow the second click of a double.
    const bool isFar =
        (place - m_pressPlace).manhattanLength() >= QApplication::startDragDistance();
    if (!m_isDragging && !isFar) {
        return m_pressed.kind == HitArea::Kind::Edge;
    }
    if (!m_isDragging && m_pressed.kind == HitArea::Kind::Caption && m_native->startSystemMove()) {
        m_pressed = {};
        return true;
    }
    m_isDragging = true;
    dragTo(place);
    return true;
}

void WindowFrame::dragTo(QPoint global)
{
    const QPoint by = global - m_pressPlace;
    if (m_pressed.kind == HitArea::Kind::Caption) {
        if (!m_window.isMaximized()) {
            m_window.move(m_pressGeometry.topLeft() + by);
        }
        return;
    }
    const QSize smallest = m_window.minimumSize().expandedTo(m_window.minimumSizeHint());
    m_window.setGeometry(resized(m_pressGeometry, m_pressed.edges, by, smallest));
}

bool WindowFrame::handleDoubleClick(const QMouseEvent &event)
{
    const HitArea area =
        hitTest(m_manager, event.position().toPoint(), m_window.size(), m_window.isMaximized());
    const bool canGrow = m_manager.GetSizeBox() != QMargins();
    if (event.button() != Qt::LeftButton || area.kind != HitArea::Kind::Caption || !canGrow) {
        return false;
    }
    m_pressed = {};
    Q_EMIT captionDoubleClicked();
    return true;
}

void WindowFrame::showCursor(const HitArea &area)
{
    const Qt::CursorShape shape = cursorFor(area);
    if (m_window.cursor().shape() != shape) {
        m_window.setCursor(shape);
    }
}

} // namespace tollivar::ui
