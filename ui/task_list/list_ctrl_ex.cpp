#include "ui/task_list/list_ctrl_ex.h"

#include "ui/skin/paint_manager.h"
#include "ui/task_list/header_ctrl_ex.h"
#include "ui/task_list/task_list_model.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolButton>

#include <algorithm>
#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

const QColor kListBack(241, 245, 250);
const QColor kHintColor(102, 115, 134);

struct Column {
    QStringView heading; ///< id of the text
    int width;           ///< pixels, in a list as wide as all of them
    int share;           ///< of what a wider list has beyond that, in percent
};

constexpr std::array<Column, kListColumnCount> kColumns = {{
    {u"strColNum", 40, 2},
    {u"strColName", 180, 45},
    {u"strColStatus", 150, 25},
    {u"strColSpeed", 70, 8},
    {u"strColTarget", 60, 4},
    {u"strColMode", 60, 16},
}};

} // namespace

CListCtrlEx::CListCtrlEx(TextLookup texts, QWidget *parent)
    : QTableView(parent)
    , m_texts(std::move(texts))
    , m_painter(QIcon(DuiLib::CPaintManagerUI::imagePath(u"img/file.svg"_s)))
{
    m_model = new TaskListModel([this](int row) { return textOf(row); }, this);
    setModel(m_model);
    m_header = new CHeaderCtrlEx(this);
    setHorizontalHeader(m_header);
    setUpLook();
    measureRows();
    connect(m_header, &CHeaderCtrlEx::sortWanted, this,
            [this](int column, tasks::SortDirection direction) {
                if (m_manager != nullptr) {
                    m_manager->sort(static_cast<tasks::SortColumn>(column), direction);
                    refreshRows();
                }
            });
    connect(m_header, &QHeaderView::sectionResized, this,
            [this] { m_hasPersonsWidths = m_hasPersonsWidths || underMouse(); });
    connect(m_hintButton, &QToolButton::clicked, this, &CListCtrlEx::addWanted);
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
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, kListBack);
    setPalette(colors);
    // A style sheet would make every scroll a repaint of the whole view.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    m_hintButton = new QToolButton(viewport());
    m_hintButton->setObjectName(u"btnEmptyAdd"_s);
    m_hintButton->setProperty("skinClass", u"ButtonUI"_s);
    m_hintButton->setProperty("look", u"primary"_s);
    m_hintButton->setCursor(Qt::ArrowCursor);
}

void CListCtrlEx::measureRows()
{
    constexpr int kLines = 3;
    const QFontMetrics metrics(font());
    m_rowHeight = (metrics.height() + std::max(0, metrics.leading())) * kLines;
    verticalHeader()->setDefaultSectionSize(m_rowHeight);
    verticalScrollBar()->setSingleStep(m_rowHeight);
}

void CListCtrlEx::attach(tasks::TaskManager *manager)
{
    m_model->setRowCount(0);
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
    for (const Column &column : kColumns) {
        headings.append(m_texts(column.heading.toString()));
    }
    m_model->setHeadings(headings);
    m_hintButton->setText(m_texts(u"strTipAddFile"_s));
    setAccessibleName(m_texts(u"strListName"_s));
    placeHint();
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
    if (!selectionModel()->isRowSelected(row, QModelIndex())) {
        return RowLook::Plain;
    }
    return hasFocus() ? RowLook::SelectedWithFocus : RowLook::SelectedWithoutFocus;
}

void CListCtrlEx::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QRect dirty = event->rect();
    const int rows = m_manager == nullptr ? 0 : m_model->rowCount();
    const int scrolled = verticalScrollBar()->value();
    const int first = (dirty.top() + scrolled) / m_rowHeight;
    const int last = std::min(rows - 1, (dirty.bottom() + scrolled) / m_rowHeight);
    const int width = m_header->length();
    std::array<QRect, kListColumnCount> cells;
    int bottom = first * m_rowHeight - scrolled;
    for (int row = first; row <= last; ++row, bottom += m_rowHeight) {
        for (int column = 0; column < static_cast<int>(kListColumnCount); ++column) {
            cells[static_cast<std::size_t>(column)] =
                QRect(columnViewportPosition(column), bottom, columnWidth(column), m_rowHeight);
        }
        m_painter.paint(painter, QRect(cells[0].left(), bottom, width, m_rowHeight), cells,
                        textOf(row), lookOf(row), font());
    }
    const int right = cells[0].left() + width;
    painter.fillRect(QRect(QPoint(right, dirty.top()), dirty.bottomRight()), kListBack);
    painter.fillRect(
        QRect(QPoint(dirty.left(), std::max(bottom, dirty.top())), dirty.bottomRight()), kListBack);
    if (rows == 0 && m_manager != nullptr) {
        painter.setPen(kHintColor);
        painter.setFont(font());
        painter.drawText(viewport()->rect().adjusted(0, 0, 0, -m_hintButton->height() - 40),
                         Qt::AlignCenter, m_texts(u"strEmptyList"_s));
    }
}

void CListCtrlEx::redrawRow(int row)
{
    const int top = row * m_rowHeight - verticalScrollBar()->value();
    if (row >= 0 && row < m_model->rowCount() && top + m_rowHeight > 0 &&
        top < viewport()->height()) {
        viewport()->update(0, top, viewport()->width(), m_rowHeight);
    }
}

void CListCtrlEx::refreshRows()
{
    const std::vector<std::uint32_t> selected = m_selectedIds;
    const int place = verticalScrollBar()->value();
    m_model->setRowCount(m_manager == nullptr ? 0 : m_manager->visibleCount());
    selectIds(selected);
    verticalScrollBar()->setValue(place);
    placeHint();
    viewport()->update();
}

void CListCtrlEx::selectIds(const std::vector<std::uint32_t> &ids)
{
    std::vector<int> rows;
    rows.reserve(ids.size());
    for (const std::uint32_t id : ids) {
        const int row = m_manager == nullptr ? -1 : m_manager->rowOf(id);
        if (row >= 0) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    QItemSelection selection;
    for (std::size_t begin = 0; begin < rows.size();) {
        std::size_t end = begin + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) {
            ++end;
        }
        selection.append(QItemSelectionRange(
            m_model->index(rows[begin], 0),
            m_model->index(rows[end - 1], static_cast<int>(kListColumnCount) - 1)));
        begin = end;
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

std::vector<int> CListCtrlEx::selectedRows() const
{
    std::vector<int> rows;
    const auto ranges = selectionModel()->selection();
    for (const auto &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void CListCtrlEx::selectRows(const std::vector<int> &rows)
{
    std::vector<std::uint32_t> ids;
    for (const int row : rows) {
        if (const auto *worker = m_manager == nullptr ? nullptr : m_manager->workerAt(row)) {
            ids.push_back(worker->taskId());
        }
    }
    selectIds(ids);
    if (!rows.empty()) {
        const QModelIndex last = m_model->index(rows.back(), 0);
        selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
        scrollTo(last);
    }
}

void CListCtrlEx::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    m_selectedIds.clear();
    for (const int row : selectedRows()) {
        if (const auto *worker = m_manager == nullptr ? nullptr : m_manager->workerAt(row)) {
            m_selectedIds.push_back(worker->taskId());
        }
    }
    viewport()->update();
}

void CListCtrlEx::shareWidth()
{
    if (m_hasPersonsWidths) {
        return;
    }
    int wanted = 0;
    for (const Column &column : kColumns) {
        wanted += column.width;
    }
    constexpr int kPercent = 100;
    const int extra = std::max(0, viewport()->width() - wanted);
    int rest = extra;
    for (std::size_t i = kColumns.size(); i-- > 0;) {
        const int share = i == 0 ? 0 : extra * kColumns[i].share / kPercent;
        rest -= share;
        setColumnWidth(static_cast<int>(i), kColumns[i].width + share);
    }
    setColumnWidth(static_cast<int>(ListColumn::Name),
                   columnWidth(static_cast<int>(ListColumn::Name)) + rest);
}

void CListCtrlEx::placeHint()
{
    constexpr int kBelowText = 14;
    const bool isEmpty = m_manager != nullptr && m_model->rowCount() == 0;
    m_hintButton->setVisible(isEmpty);
    m_hintButton->resize(m_hintButton->sizeHint());
    const QPoint middle = viewport()->rect().center();
    m_hintButton->move(middle.x() - m_hintButton->width() / 2, middle.y() + kBelowText);
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
    if (event->key() == Qt::Key_Delete) {
        Q_EMIT removeWanted();
    } else if (event->key() == Qt::Key_Space) {
        Q_EMIT toggleWanted();
    } else {
        QTableView::keyPressEvent(event);
    }
}

void CListCtrlEx::contextMenuEvent(QContextMenuEvent *event)
{
    const auto rows = selectedRows();
    if (rows.empty()) {
        return;
    }
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect row = visualRect(m_model->index(rows.front(), 1));
        place = viewport()->mapToGlobal(row.center());
    }
    Q_EMIT menuWanted(place);
}

void CListCtrlEx::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton) {
        Q_EMIT activated(index.row());
    }
}

} // namespace tollivar::ui
