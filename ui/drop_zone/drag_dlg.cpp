#include "ui/drop_zone/drag_dlg.h"

#include "fetch/text/site_url.h"
#include "platform/build_config.h"
#include "ui/drop_zone/drop_hint.h"
#include "ui/drop_zone/progress_ring.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QStyle>
#include <QTimer>
#include <QUrl>

#include <algorithm>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

QString watchPageIn(const QString &copied)
{
    const auto isLineEnd = [](QChar character) { return character == u'\r' || character == u'\n'; };
    const auto end = std::find_if(copied.begin(), copied.end(), isLineEnd);
    const QString line = copied.left(end - copied.begin());
    return fetch::watchPageId(line) ? line : QString();
}

bool isDroppedText(const QMimeData &data)
{
    // A file manager offers its files as text too.
    const auto addresses = data.urls();
    const bool isFile = std::any_of(addresses.begin(), addresses.end(),
                                    [](const QUrl &address) { return address.isLocalFile(); });
    // Qt makes a text of addresses alone; only what was offered as plain text counts.
    const bool isText =
        data.hasFormat(u"text/plain"_s) || data.hasFormat(u"text/plain;charset=utf-8"_s);
    return !isFile && isText && !data.text().isEmpty();
}

CDragDlg::CDragDlg(platform::AppMessagePort owner, Text text)
    : CUILibDialog(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint)
    , m_owner(std::move(owner))
    , m_text(std::move(text))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAcceptDrops(true);
    constexpr std::chrono::milliseconds kRest{500};
    m_moveEnd = new QTimer(this);
    m_moveEnd->setSingleShot(true);
    m_moveEnd->setInterval(kRest);
    connect(m_moveEnd, &QTimer::timeout, this, [this] { Q_EMIT moveEnded(pos()); });
    createFace(u"DialogDragDrop.xml"_s, {});
    applyLanguage();
    setFixedSize(paintManager().GetInitSize());
    m_hint = new DropHint(*this);
    m_ring = new ProgressRing(*this);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &CDragDlg::watchClipboard);
}

void CDragDlg::applyLanguage()
{
    setWindowTitle(platform::build::kProductName + u' ' + m_text(u"strDropZone"_s));
}

void CDragDlg::setProgress(std::optional<double> share)
{
    m_ring->setShare(share);
}

void CDragDlg::watchClipboard()
{
    if (!m_isMonitoring || QGuiApplication::clipboard()->ownsClipboard()) {
        return;
    }
    const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
    if (copied == nullptr || !copied->hasText()) {
        return;
    }
    const QString address = watchPageIn(copied->text());
    if (!address.isEmpty()) {
        m_receivedText = address;
        m_owner.post(platform::AppMessageId::AddressReady, kFromClipboard, 0);
    }
}

void CDragDlg::dragEnterEvent(QDragEnterEvent *event)
{
    if (isDroppedText(*event->mimeData())) {
        event->acceptProposedAction();
        showHovered(true);
    }
}

void CDragDlg::dragLeaveEvent(QDragLeaveEvent *event)
{
    CUILibDialog::dragLeaveEvent(event);
    showHovered(false);
}

void CDragDlg::dropEvent(QDropEvent *event)
{
    showHovered(false);
    if (!isDroppedText(*event->mimeData())) {
        return;
    }
    m_receivedText = event->mimeData()->text();
    m_owner.post(platform::AppMessageId::AddressReady, kDropped, 0);
    event->acceptProposedAction();
}

void CDragDlg::showHovered(bool isHovered)
{
    if (isHovered) {
        m_hint->showBeside(geometry(), m_text(u"strDropHint"_s));
    } else {
        m_hint->hide();
    }
    const auto faces = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *face : faces) {
        if (face->isWindow()) {
            continue;
        }
        face->setProperty("hovered", isHovered);
        face->style()->unpolish(face);
        face->style()->polish(face);
    }
}

void CDragDlg::hideEvent(QHideEvent *event)
{
    CUILibDialog::hideEvent(event);
    // The last move counts although nobody waited for it to come to rest.
    if (m_moveEnd->isActive()) {
        m_moveEnd->stop();
        Q_EMIT moveEnded(pos());
    }
}

void CDragDlg::moveEvent(QMoveEvent *event)
{
    CUILibDialog::moveEvent(event);
    if (isVisible()) {
        m_moveEnd->start();
    }
}

void CDragDlg::mouseDoubleClickEvent(QMouseEvent * /*event*/)
{
    Q_EMIT doubleClicked();
}

void CDragDlg::Notify(const DuiLib::SkinEvent & /*event*/) {}

} // namespace tollivar::ui
