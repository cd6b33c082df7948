#include "companions/sniff_browser/media_panel.h"

#include "companions/sniff_browser/media_model.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTreeView>

namespace tollivar::sniff {

using namespace Qt::StringLiterals;

namespace {

constexpr int kGrid = 8;

/// The colours of the program's own windows.
const QString kLook = uR"(
    QWidget { font-size: 10pt; color: #1f2937; }
    tollivar--sniff--MediaPanel { background: #f5f7fa; }
    QTreeView { background: white; border: 1px solid #d5dce6; border-radius: 6px; outline: none;
                alternate-background-color: #f8fafc; }
    QTreeView:focus, #hint:focus { border-color: #7fb0e4; }
    QTreeView::item { padding: 5px 6px; border: none; }
    QTreeView::item:selected { background: #dfeaf7; color: #1f2937; }
    QHeaderView::section { background: #eef2f7; border: none; border-bottom: 1px solid #d5dce6;
                           padding: 5px 6px; color: #5b6778; }
    #hint { background: white; border: 1px solid #d5dce6; border-radius: 6px; color: #5b6778;
            padding: 24px; }
    #status { color: #5b6778; }
    QPushButton { background: white; border: 1px solid #c6d0dc; border-radius: 6px;
                  padding: 0 14px; min-height: 30px; }
    QPushButton:hover { border-color: #2d73c4; background: #f2f7fd; }
    QPushButton:pressed { background: #dfeaf7; }
    QPushButton:focus { border: 2px solid #7fb0e4; padding: 0 13px; }
    QPushButton:disabled { background: #f1f3f6; color: #a3adbb; border-color: #dde3ea; }
    #download { background: #2d73c4; border-color: #2363ad; color: white; font-weight: 600; }
    #download:hover { background: #3b82d4; }
    #download:disabled { background: #b9cde6; border-color: #b9cde6; color: white; }
)"_s;

QPushButton *makeButton(const QString &name, const QString &text, const QString &tip)
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAccessibleDescription(tip);
    return button;
}

} // namespace

MediaPanel::MediaPanel(QWidget *parent) : QWidget(parent), m_model(new MediaModel(this))
{
    setWindowTitle(tr("Capture Browser"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(kLook);
    m_hint =
        new QLabel(tr("Play a video in the browser window.\nWhat the page plays appears here."));
    m_hint->setObjectName(u"hint"_s);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    // Else the keyboard would begin on the button that wipes everything.
    m_hint->setFocusPolicy(Qt::StrongFocus);
    m_pages = new QStackedWidget;
    m_pages->addWidget(m_hint);
    m_pages->addWidget(makeList());
    m_status = new QLabel;
    m_status->setObjectName(u"status"_s);
    m_status->setWordWrap(true);
    // Titles and reasons come from outside.
    m_status->setTextFormat(Qt::PlainText);
    m_hint->setTextFormat(Qt::PlainText);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
    column->setSpacing(kGrid);
    column->addWidget(m_pages, 1);
    column->addWidget(m_status);
    column->addWidget(makeButtons());
    resize(560, 320);
    refreshButtons();
}

QWidget *MediaPanel::makeList()
{
    m_view = new QTreeView;
    m_view->setObjectName(u"media"_s);
    m_view->setAccessibleName(tr("Media on the pages"));
    m_view->setModel(m_model);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setAllColumnsShowFocus(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(MediaModel::Title, QHeaderView::Stretch);
    m_view->setColumnWidth(MediaModel::Type, 70);
    m_view->setColumnWidth(MediaModel::Size, 90);
    m_view->setColumnWidth(MediaModel::Site, 140);
    connect(m_view, &QTreeView::activated, this, &MediaPanel::chooseSelected);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MediaPanel::refreshButtons);
    return m_view;
}

QWidget *MediaPanel::makeButtons()
{
    auto *bar = new QWidget;
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGrid);
    auto *forget = makeButton(u"forget"_s, tr("&Forget Everything"),
                              tr("Closes the browser, wipes its history, cookies and log-ins, and "
                                 "opens it anew"));
    m_copy = makeButton(u"copy"_s, tr("&Copy Address"), tr("Copies the addresses of the media"));
    m_download = makeButton(u"download"_s, tr("&Download"), tr("Hands the media to the program"));
    m_download->setDefault(true);
    row->addWidget(forget);
    row->addStretch();
    row->addWidget(m_copy);
    row->addWidget(m_download);
    connect(forget, &QPushButton::clicked, this, &MediaPanel::forgetWanted);
    connect(m_copy, &QPushButton::clicked, this, &MediaPanel::copySelected);
    connect(m_download, &QPushButton::clicked, this, &MediaPanel::chooseSelected);
    return bar;
}

void MediaPanel::setMedia(const std::vector<capture::MediaFound> &media)
{
    const QStringList selected = selectedAddresses();
    const QString current = addressAt(m_view->currentIndex());
    // Who looks at the beginning sees what is new; who has scrolled on keeps what they look at.
    const bool isAtBeginning = m_view->verticalScrollBar()->value() == 0;
    const QString top = isAtBeginning ? QString() : addressAt(m_view->indexAt(QPoint(0, 0)));
    m_model->setMedia(media);
    select(QSet<QString>(selected.begin(), selected.end()), current);
    if (const int row = m_model->rowOf(top); row >= 0) {
        m_view->scrollTo(m_model->index(row, 0), QAbstractItemView::PositionAtTop);
    } else if (isAtBeginning) {
        m_view->scrollToTop();
    }
    m_pages->setCurrentWidget(media.empty() ? static_cast<QWidget *>(m_hint) : m_view);
    setWindowTitle(media.empty() ? tr("Capture Browser")
                                 : tr("Capture Browser (%1)").arg(media.size()));
    refreshButtons();
}

void MediaPanel::setStatus(const QString &text)
{
    m_status->setText(text);
}

void MediaPanel::showProblem(const QString &reason)
{
    m_hint->setText(reason);
    m_pages->setCurrentWidget(m_hint);
}

QStringList MediaPanel::selectedAddresses() const
{
    QStringList addresses;
    const auto rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        addresses.append(m_model->mediumAt(row.row()).address);
    }
    return addresses;
}

QString MediaPanel::addressAt(const QModelIndex &index) const
{
    return index.isValid() ? m_model->mediumAt(index.row()).address : QString();
}

void MediaPanel::select(const QSet<QString> &addresses, const QString &current)
{
    // Neighbours as one range: a thousand of one row each take longer than a frame.
    QItemSelection selection;
    const int count = m_model->rowCount();
    int first = 0;
    for (int row = 0; row <= count; ++row) {
        if (row < count && addresses.contains(m_model->mediumAt(row).address)) {
            continue;
        }
        if (first < row) {
            selection.append(QItemSelectionRange(
                m_model->index(first, 0), m_model->index(row - 1, MediaModel::ColumnCount - 1)));
        }
        first = row + 1;
    }
    if (selection.isEmpty() && count > 0) {
        m_view->setCurrentIndex(m_model->index(0, 0));
        return;
    }
    m_view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty()) {
        const int row = m_model->rowOf(current);
        m_view->selectionModel()->setCurrentIndex(
            row >= 0 ? m_model->index(row, 0) : QModelIndex(selection.front().topLeft()),
            QItemSelectionModel::NoUpdate);
    }
}

void MediaPanel::chooseSelected()
{
    std::vector<capture::MediaFound> chosen;
    const auto rows = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        chosen.push_back(m_model->mediumAt(row.row()));
    }
    if (!chosen.empty()) {
        Q_EMIT downloadWanted(chosen);
    }
}

void MediaPanel::copySelected()
{
    QGuiApplication::clipboard()->setText(selectedAddresses().join(u'\n'));
}

void MediaPanel::refreshButtons()
{
    const bool hasSelection = m_view->selectionModel()->hasSelection();
    m_download->setEnabled(hasSelection);
    m_copy->setEnabled(hasSelection);
}

void MediaPanel::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

} // namespace tollivar::sniff
