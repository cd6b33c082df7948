#include "ui/notify/task_notify_dlg.h"

#include "ui/skin/text_ui.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using DuiLib::RequiredControl;

namespace {

constexpr std::array kControls = {
    RequiredControl{"Text"_L1, "textFileName"_L1},    RequiredControl{"Button"_L1, "btnConvert"_L1},
    RequiredControl{"Button"_L1, "btnOpenFolder"_L1}, RequiredControl{"Button"_L1, "btnCancel"_L1},
    RequiredControl{"Button"_L1, "btnClose"_L1},
};

/// Between two popups, and none at the edges of the screen.
constexpr int kGap = 8;

const QColor kLinkHovered(0xF5, 0x3A, 0x00);

CTaskNotifyDlg *&head()
{
    static CTaskNotifyDlg *newest = nullptr;
    return newest;
}

} // namespace

CTaskNotifyDlg::CTaskNotifyDlg(File file, const DialogTexts &texts)
    : CUILibDialog(nullptr, Qt::ToolTip | Qt::WindowStaysOnTopHint)
    , m_file(std::move(file))
    , m_tick(new QTimer(this))
    , m_stay(new QTimer(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    createFace(u"DialogNotify.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_NOTIFY"_s, texts);
    auto &name = control<DuiLib::CTextUI>("textFileName"_L1);
    name.setLinkColors(Qt::black, kLinkHovered);
    name.setMarkup(u"{a}"_s + m_file.name + m_file.type + u"{/a}"_s);
    m_stay->setSingleShot(true);
    connect(m_stay, &QTimer::timeout, this, [this] {
        connect(m_tick, &QTimer::timeout, this, &CTaskNotifyDlg::slideOut);
        m_tick->start();
    });
}

CTaskNotifyDlg::~CTaskNotifyDlg()
{
    CTaskNotifyDlg **link = &head();
    while (*link != nullptr && *link != this) {
        link = &(*link)->m_older;
    }
    if (*link == this) {
        *link = m_older;
    }
}

CTaskNotifyDlg *CTaskNotifyDlg::newest()
{
    return head();
}

void CTaskNotifyDlg::closeAll()
{
    while (head() != nullptr) {
        delete head();
    }
}

void CTaskNotifyDlg::showFor(const NotifyTimes &times)
{
    m_times = times;
    m_older = head();
    head() = this;
    // The lowest place that no open popup has.
    for (const CTaskNotifyDlg *each = m_older; each != nullptr;) {
        each = each->m_place == m_place ? (++m_place, m_older) : each->m_older;
    }
    m_workArea = QGuiApplication::primaryScreen()->availableGeometry();
    move(m_workArea.right() + 1 - width(), m_workArea.bottom() + 1);
    show();
    const int steps = std::max(1, (m_workArea.bottom() + 1 - restingTop()) / m_times.step);
    m_tick->setInterval(m_times.slideIn / steps);
    connect(m_tick, &QTimer::timeout, this, &CTaskNotifyDlg::slideIn);
    m_tick->start();
}

int CTaskNotifyDlg::restingTop() const
{
    const int top = m_workArea.bottom() + 1 - height() - m_place * (height() + kGap);
    return std::max(m_workArea.top(), top);
}

void CTaskNotifyDlg::moveTo(int top)
{
    move(x(), top);
}

void CTaskNotifyDlg::slideIn()
{
    moveTo(std::max(restingTop(), y() - m_times.step));
    if (y() > restingTop()) {
        return;
    }
    m_tick->stop();
    m_tick->disconnect(this);
    const int steps = std::max(1, (m_workArea.bottom() + 1 - restingTop()) / m_times.step);
    m_tick->setInterval(m_times.slideOut / steps);
    update();
    if (!underMouse()) {
        m_stay->start(m_times.stay);
    }
}

void CTaskNotifyDlg::slideOut()
{
    moveTo(y() + m_times.step);
    if (y() > m_workArea.bottom()) {
        close();
    }
}

void CTaskNotifyDlg::enterEvent(QEnterEvent *event)
{
    CUILibDialog::enterEvent(event);
    m_stay->stop();
}

void CTaskNotifyDlg::leaveEvent(QEvent *event)
{
    CUILibDialog::leaveEvent(event);
    if (!m_tick->isActive()) {
        m_stay->start(m_times.stay);
    }
}

void CTaskNotifyDlg::Notify(const DuiLib::SkinEvent &event)
{
    const bool isLink = event.type == DuiLib::events::kLink;
    if (!isLink && event.type != DuiLib::events::kClick) {
        return;
    }
    // Whoever is told may open a box, and in its event loop the popup may be destroyed: it is done
    // before, and nothing of it is used afterwards.
    const File file = m_file;
    const QString name = event.name;
    m_tick->disconnect(this);
    m_stay->disconnect(this);
    close();
    if (isLink) {
        Q_EMIT playWanted(file.path());
    } else if (name == "btnOpenFolder"_L1) {
        Q_EMIT folderWanted(file.path());
    } else if (name == "btnConvert"_L1) {
        Q_EMIT conversionWanted(file.path());
    }
}

} // namespace tollivar::ui
