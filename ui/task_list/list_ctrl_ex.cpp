#include "ui/task_list/list_ctrl_ex.h"

#include "ui/skin/paint_manager.h"
#include "ui/task_list/cell_text.h"
#include "ui/task_list/empty_hint.h"
#include "ui/task_list/header_ctrl_ex.h"
#include "ui/task_list/task_list_model.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNameColumn = static_cast<int>(ListColumn::Name);

QString cellToolTip(const RowText &text, ListColumn column)
{
    switch (column) {
    case ListColumn::Number:
        return text.number;
    case ListColumn::Name:
        return text.path;
    case ListColumn::Status:
        return text.detail.isEmpty() ? text.status : text.status + u'\n' + text.detail;
    case ListColumn::Speed:
        return text.speed + u'\n' + text.timeLeft;
    case ListColumn::Target:
        return text.target;
    case ListColumn::Mode:
        return text.mode;
    }
    return {};
}

} // namespace

CListCtrlEx::CListCtrlEx(TextLookup texts, QWidget *parent)
    : QTableView(parent)
    , m_texts(std::move(texts))
    , m_painter(QIcon(DuiLib::CPaintManagerUI::imagePath(u"img/file.svg"_s)))
{
    m_model =
        new TaskListModel([this](int row) { return textOf(row); },
                          [this](int row) { return sourceOf(row).record.strOutputName; }, this);
    setModel(m_model);
    m_header = new CHeaderCtrlEx(this);
    setHorizontalHeader(m_header);
    m_hint = new EmptyHint(viewport());
    connect(m_hint, &EmptyHint::addWanted, this, &CListCtrlEx::addWanted);
    setUpLook();
    measureRows();
    connectHeader();
    applyLanguage();
}

void CListCtrlEx::setUpLook()
{
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    // What is dragged over the list belongs to the window.
    setDragDropMode(NoDragDrop);
    setAcceptDrops(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, kListBack);
    setPalette(colors);
    // A style sheet would make every scroll a repaint of the whole view.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void CListCtrlEx::connectHeader()
{
    connect(m_header, &CHeaderCtrlEx::sortWanted, this, &CListCtrlEx::sortBy);
    connect(m_header, &QHeaderView::sectionResized, this, [this] {
        if (!m_isSharing) {
            m_hasPersonsWidths = true;
            Q_EMIT widthsChosen();
        }
    });
}

void CListCtrlEx::measureRows()
{
    constexpr int kLines = 3;
    const QFontMetrics metrics(font());
    m_rowHeight = (metrics.height() + std::max(0, metrics.leading())) * kLines;
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(m_rowHeight);
    verticalScrollBar()->setSingleStep(m_rowHeight);
}

void CListCtrlEx::attach(tasks::TaskManager *manager)
{
    m_model->setRowCount(0);
    m_kept.clear();
    m_manager = manager;
    refreshRows();
}

void CListCtrlEx::setRetrySetting(int retries)
{
    m_retrySetting = retries;
    viewport()->update();
}

void CListCtrlEx::onConversion(std::function<Conversion(std::uint32_t)> query)
{
    m_conversion = std::move(query);
}

void CListCtrlEx::applyLanguage()
{
    QStringList headings;
    for (std::size_t column = 0; column < kListColumnCount; ++column) {
        headings.append(m_texts(headingId(static_cast<ListColumn>(column)).toString()));
    }
    m_model->setHeadings(headings);
    tellWhyEmpty();
    setAccessibleName(m_texts(u"strListName"_s));
    shareWidth();
    viewport()->update();
}

RowSource CListCtrlEx::sourceOf(int row) const
{
    RowSource source;
    source.retrySetting = m_retrySetting;
    const tasks::TaskWorker *worker = m_manager == nullptr ? nullptr : m_manager->workerAt(row);
    if (worker == nullptr) {
        return source;
    }
    source.record = worker->record();
    source.state = worker->state();
    source.failedStage = worker->previousState();
    source.failure = worker->failure();
    source.progress = worker->progress();
    source.ordinal = worker->taskId();
    source.retryCount = worker->retryAttempt();
    if (m_conversion) {
        Conversion conversion = m_conversion(worker->taskId());
        source.convertingPercent = conversion.percent;
        source.conversionFailure = std::move(conversion.failure);
    }
    return source;
}

RowText CListCtrlEx::textOf(int row) const
{
    return rowText(sourceOf(row), m_texts);
}

RowLook CListCtrlEx::lookOf(int row) const
{
    if (selectionModel()->isRowSelected(row, QModelIndex())) {
        return hasFocus() ? RowLook::SelectedWithFocus : RowLook::SelectedWithoutFocus;
    }
    return hasFocus() && currentIndex().row() == row ? RowLook::PlainCurrent : RowLook::Plain;
}

std::array<QRect, kListColumnCount> CListCtrlEx::cellsAt(int top) const
{
    std::array<QRect, kListColumnCount> cells;
    for (int column = 0; column < static_cast<int>(kListColumnCount); ++column) {
        cells[static_cast<std::size_t>(column)] =
            QRect(columnViewportPosition(column), top, columnWidth(column), m_rowHeight);
    }
    return cells;
}

void CListCtrlEx::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QRect dirty = event->rect();
    const int rows = m_manager == nullptr ? 0 : m_model->rowCount();
    const int scrolled = verticalScrollBar()->value();
    const int first = (dirty.top() + scrolled) / m_rowHeight;
    const int last = std::min(rows - 1, (dirty.bottom() + scrolled) / m_rowHeight);
    for (int row = first; row <= last; ++row) {
        const int top = row * m_rowHeight - scrolled;
        const QRect place(columnViewportPosition(0), top, m_header->length(), m_rowHeight);
        // A row between two changed ones is left as it is on the screen.
        if (event->region().intersects(place)) {
            m_painter.paint(painter, place, cellsAt(top), textOf(row), lookOf(row), font());
        }
    }
    fillAround(painter, dirty, rows * m_rowHeight - scrolled);
}

void CListCtrlEx::fillAround(QPainter &painter, const QRect &dirty, int rowsEnd) const
{
    const int right = columnViewportPosition(0) + m_header->length();
    if (right <= dirty.right()) {
        painter.fillRect(QRect(QPoint(right, dirty.top()), dirty.bottomRight()), kListBack);
    }
    const int below = std::max(rowsEnd, dirty.top());
    if (below <= dirty.bottom()) {
        painter.fillRect(QRect(QPoint(dirty.left(), below), dirty.bottomRight()), kListBack);
    }
}

void CListCtrlEx::redrawRow(int row)
{
    const int top = row * m_rowHeight - verticalScrollBar()->value();
    if (row >= 0 && row < m_model->rowCount()) {
        viewport()->update(0, top, viewport()->width(), m_rowHeight);
    }
}

void CListCtrlEx::refreshRows()
{
    const int place = verticalScrollBar()->value();
    {
        const QScopedValueRollback restoring(m_isRestoring, true);
        m_model->setRowCount(m_manager == nullptr ? 0 : m_manager->visibleCount());
        // Otherwise the scroll bar would learn of the new rows only after its place is set.
        executeDelayedItemsLayout();
        m_kept.apply(*selectionModel(), m_manager);
    }
    // What was selected may be gone.
    m_kept.read(*selectionModel(), m_manager);
    verticalScrollBar()->setValue(place);
    if (m_manager != nullptr) {
        m_header->showOrder(m_manager->order());
    }
    tellWhyEmpty();
    placeHint();
    viewport()->update();
    Q_EMIT selectionMayDiffer();
}

void CListCtrlEx::sortBy(int column, tasks::SortDirection direction)
{
    if (m_manager == nullptr) {
        return;
    }
    m_manager->sort(static_cast<tasks::SortColumn>(column), direction);
    refreshRows();
}

std::vector<int> CListCtrlEx::selectedRows() const
{
    return selectedRowsOf(*selectionModel());
}

void CListCtrlEx::selectRows(const std::vector<int> &rows)
{
    std::vector<int> present = rows;
    std::erase_if(present, [this](int row) { return row < 0 || row >= m_model->rowCount(); });
    selectRowsOf(*selectionModel(), present);
    if (!present.empty()) {
        const QModelIndex last = m_model->index(present.back(), kNameColumn);
        selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
        scrollTo(last);
    }
}

void CListCtrlEx::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    if (m_isRestoring) {
        return;
    }
    m_kept.read(*selectionModel(), m_manager);
    viewport()->update();
    Q_EMIT selectionMayDiffer();
}

void CListCtrlEx::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    if (m_isRestoring) {
        return; // The base would bring the row into view.
    }
    QTableView::currentChanged(current, previous);
    m_kept.read(*selectionModel(), m_manager);
    redrawRow(previous.row());
    redrawRow(current.row());
}

ColumnNeeds CListCtrlEx::columnNeeds() const
{
    constexpr int kAir = 6;
    ColumnNeeds needs;
    for (std::size_t column = 0; column < kListColumnCount; ++column) {
        needs.headings[column] = m_header->headingWidth(static_cast<int>(column));
    }
    auto &modes = needs.texts[static_cast<std::size_t>(ListColumn::Mode)];
    for (const QString &id : {u"strModeFLVAuto"_s, u"strModeSWFAuto"_s}) {
        const int text = fontMetrics().horizontalAdvance(m_texts(id));
        modes = std::max(modes, text + 2 * (kTextMargin + kAir));
    }
    return needs;
}

void CListCtrlEx::shareWidth()
{
    if (m_hasPersonsWidths) {
        return;
    }
    const QScopedValueRollback sharing(m_isSharing, true);
    const auto widths = columnWidths(viewport()->width(), columnNeeds());
    for (std::size_t column = 0; column < widths.size(); ++column) {
        setColumnWidth(static_cast<int>(column), widths[column]);
    }
}

std::optional<std::array<int, kListColumnCount>> CListCtrlEx::chosenWidths() const
{
    if (!m_hasPersonsWidths) {
        return std::nullopt;
    }
    std::array<int, kListColumnCount> widths{};
    for (std::size_t column = 0; column < widths.size(); ++column) {
        widths[column] = columnWidth(static_cast<int>(column));
    }
    return widths;
}

void CListCtrlEx::setChosenWidths(const std::array<int, kListColumnCount> &widths)
{
    m_hasPersonsWidths = true;
    const QScopedValueRollback sharing(m_isSharing, true);
    for (std::size_t column = 0; column < widths.size(); ++column) {
        setColumnWidth(static_cast<int>(column), widths[column]);
    }
}

void CListCtrlEx::tellWhyEmpty()
{
    const bool hasTasks =
        m_manager != nullptr && m_manager->unfinishedCount() + m_manager->completedCount() > 0;
    const auto filter = m_manager == nullptr ? tasks::TaskFilter::All : m_manager->filter();
    if (hasTasks && filter == tasks::TaskFilter::Downloading) {
        m_hint->setText(m_texts(u"strEmptyDownloading"_s));
    } else if (hasTasks && filter == tasks::TaskFilter::Downloaded) {
        m_hint->setText(m_texts(u"strEmptyDownloaded"_s));
    } else {
        m_hint->setTexts(m_texts(u"strEmptyList"_s), m_texts(u"strTipAddFile"_s));
    }
}

void CListCtrlEx::placeHint()
{
    m_hint->setVisible(m_manager != nullptr && m_model->rowCount() == 0);
    m_hint->center();
}

void CListCtrlEx::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    shareWidth();
    placeHint();
}

void CListCtrlEx::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_header != nullptr) {
        measureRows();
    }
}

void CListCtrlEx::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isPlain && event->key() == Qt::Key_Space) {
        Q_EMIT toggleWanted();
    } else {
        QTableView::keyPressEvent(event);
    }
}

QModelIndex CListCtrlEx::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // Keys move among rows; a table would take these for moves within the row.
    const int last = m_model->rowCount() - 1;
    switch (action) {
    case MoveHome:
        return m_model->index(0, kNameColumn);
    case MoveEnd:
        return m_model->index(last, kNameColumn);
    case MoveLeft:
    case MoveRight: {
        QScrollBar &bar = *horizontalScrollBar();
        bar.triggerAction(action == MoveLeft ? QScrollBar::SliderSingleStepSub
                                             : QScrollBar::SliderSingleStepAdd);
        return currentIndex();
    }
    case MoveUp:
    case MoveDown:
    case MovePageUp:
    case MovePageDown:
    case MoveNext:
    case MovePrevious:
        break;
    }
    const QModelIndex index = QTableView::moveCursor(action, modifiers);
    return index.siblingAtColumn(kNameColumn);
}

void CListCtrlEx::contextMenuEvent(QContextMenuEvent *event)
{
    const auto rows = selectedRows();
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && !rows.empty()) {
        const QRect row = visualRect(m_model->index(rows.front(), kNameColumn));
        const QRect seen = viewport()->rect();
        const QPoint inView(std::clamp(row.center().x(), seen.left(), seen.right()),
                            std::clamp(row.center().y(), seen.top(), seen.bottom()));
        place = viewport()->mapToGlobal(inView);
    }
    Q_EMIT menuWanted(place);
}

void CListCtrlEx::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton) {
        Q_EMIT rowActivated(index.row());
    }
}

bool CListCtrlEx::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        showToolTip(*static_cast<QHelpEvent *>(event));
        return true;
    }
    return QTableView::viewportEvent(event);
}

void CListCtrlEx::showToolTip(QHelpEvent &event)
{
    const QModelIndex index = indexAt(event.pos());
    const QRect cell = visualRect(index);
    const auto column = static_cast<ListColumn>(std::max(0, index.column()));
    const RowText text = index.isValid() ? textOf(index.row()) : RowText{};
    if (!index.isValid() || !RowPainter::isCut(column, cell.size(), text, font())) {
        QToolTip::hideText();
        return;
    }
    // As text, whatever it looks like: names come from pages.
    QToolTip::showText(event.globalPos(),
                       Qt::convertFromPlainText(cellToolTip(text, column), Qt::WhiteSpaceNormal),
                       viewport(), cell);
}

} // namespace tollivar::ui
