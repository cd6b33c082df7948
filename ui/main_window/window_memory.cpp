#include "ui/main_window/window_memory.h"

#include "ui/task_list/list_ctrl_ex.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

/// No window is placed further away, and no column made wider, whatever the file says.
constexpr int kLargest = 16'384;
constexpr int kNarrowestColumn = 8;

template<std::size_t count>
std::optional<std::array<int, count>> readNumbers(const QString &text)
{
    const auto pieces = text.split(u',');
    if (pieces.size() != static_cast<qsizetype>(count)) {
        return std::nullopt;
    }
    std::array<int, count> numbers{};
    for (std::size_t i = 0; i < count; ++i) {
        bool isNumber = false;
        numbers[i] = pieces[static_cast<qsizetype>(i)].toInt(&isNumber);
        if (!isNumber || numbers[i] < -kLargest || numbers[i] > kLargest) {
            return std::nullopt;
        }
    }
    return numbers;
}

template<typename Numbers>
QString textOf(const Numbers &numbers)
{
    QStringList pieces;
    for (const int number : numbers) {
        pieces.append(QString::number(number));
    }
    return pieces.join(u',');
}

bool fitsSomeScreen(const QRect &place)
{
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&place](const QScreen *screen) {
        return screen->availableGeometry().contains(place);
    });
}

} // namespace

std::optional<QRect> storedPlace(const QString &text)
{
    const auto numbers = readNumbers<4>(text);
    if (!numbers) {
        return std::nullopt;
    }
    const auto [x, y, width, height] = *numbers;
    const QRect place(x, y, width, height);
    return place.isEmpty() ? std::nullopt : std::optional(place);
}

std::optional<std::array<int, kListColumnCount>> storedWidths(const QString &text)
{
    auto widths = readNumbers<kListColumnCount>(text);
    if (!widths || *std::min_element(widths->begin(), widths->end()) < kNarrowestColumn) {
        return std::nullopt;
    }
    return widths;
}

WindowMemory::WindowMemory(QWidget &window, CListCtrlEx &list,
                           const settings::SettingsStore &settings)
    : m_window(window)
    , m_list(list)
    , m_settings(settings)
{
    constexpr std::chrono::milliseconds kRest{500};
    m_rest.setSingleShot(true);
    m_rest.setInterval(kRest);
    connect(&m_rest, &QTimer::timeout, this, &WindowMemory::store);
    restore();
    m_window.installEventFilter(this);
    connect(&m_list, &CListCtrlEx::widthsChosen, this, [this] { m_rest.start(); });
}

void WindowMemory::restore()
{
    if (const auto place = storedPlace(m_settings.text(settings::keys::kWindowPlace));
        place && fitsSomeScreen(*place)) {
        m_window.setGeometry(*place);
        m_place = place;
    }
    m_isToBeMaximised = m_settings.flag(settings::keys::kWindowMaximised);
    if (const auto widths = storedWidths(m_settings.text(settings::keys::kColumnWidths))) {
        m_list.setChosenWidths(*widths);
    }
}

void WindowMemory::maximiseOnce()
{
    if (std::exchange(m_isToBeMaximised, false)) {
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
    }
}

void WindowMemory::store()
{
    m_rest.stop();
    if (m_isToBeMaximised) {
        return;
    }
    const bool isMaximised = m_window.windowState().testFlag(Qt::WindowMaximized);
    m_settings.setFlag(settings::keys::kWindowMaximised, isMaximised);
    const bool isAsChosen = !isMaximised && !m_window.isMinimized();
    const QRect place = isAsChosen ? m_window.geometry() : m_window.normalGeometry();
    // The toolkit takes the work area for the window's own place when the window manager tells of
    // the new size before the new state.
    if (!place.isEmpty() && place != m_window.screen()->availableGeometry()) {
        m_place = place;
    }
    if (m_place) {
        m_settings.setText(
            settings::keys::kWindowPlace,
            textOf(std::array{m_place->x(), m_place->y(), m_place->width(), m_place->height()}));
    }
    if (const auto widths = m_list.chosenWidths()) {
        m_settings.setText(settings::keys::kColumnWidths, textOf(*widths));
    }
}

bool WindowMemory::eventFilter(QObject * /*watched*/, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        if (m_window.isVisible()) {
            m_rest.start();
        }
        break;
    case QEvent::Show:
        // Only then: a window that comes up maximised may take that size for its own.
        QTimer::singleShot(0, this, &WindowMemory::maximiseOnce);
        break;
    case QEvent::Hide:
        // Nobody waits for what is not at rest yet.
        if (m_rest.isActive()) {
            store();
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace tollivar::ui
