#include "ui/notify/task_notify_dlg.h"

#include "ui/notify/popup_places.h"
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
    setFixedSize(paintManager().GetInitSize());
    applyDialogTexts(*this, u"DIALOG_NOTIFY"_s, texts);
    auto &name = control<DuiLib::CTextUI>("textFileName"_L1);
    name.setLinkColors(Qt::black, kLinkHovered);
    name.setLink(m_file.name + m_file.type);
    name.setToolTip(m_file.name + m_file.type);
    m_stay->setSingleShot(true);
    connect(m_stay, &QTimer::timeout, this, [this] {
        connect(m_tick, &QTimer::timeout, this, &CTaskNotifyDlg::slideOut);
        startSliding(m_times.slideOut);
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
    m_place = freePlace();
    m_older = head();
    head() = this;
    m_rest = popupPlace(m_place, size(), QGuiApplication::primaryScreen()->availableGeometry());
    moveTo(m_rest.bottom() + 1);
    show();
    connect(m_tick, &QTimer::timeout, this, &CTaskNotifyDlg::slideIn);
    startSliding(m_times.slideIn);
}

int CTaskNotifyDlg::freePlace()
{
    int place = 0;
    for (const CTaskNotifyDlg *each = head(); each != nullptr;) {
        const bool isTaken = each->m_place == place;
        place += isTaken ? 1 : 0;
        each = isTaken ? head() : each->m_older;
    }
    return place;
}

void CTaskNotifyDlg::startSliding(std::chrono::milliseconds time)
{
    const int steps = std::max(1, height() / m_times.step);
    m_tick->setInterval(time / steps);
    m_tick->start();
}

void CTaskNotifyDlg::moveTo(int top)
{
    move(m_rest.left(), top);
    // It comes up from behind the popup below it, or from behind the panel.
    showOnly(QRect(0, 0, width(), m_rest.bottom() + 1 - top));
}

void CTaskNotifyDlg::slideIn()
{
    moveTo(std::max(m_rest.top(), y() - m_times.step));
    if (y() > m_rest.top()) {
        return;
    }
    m_tick->stop();
    m_tick->disconnect(this);
    update();
    if (!underMouse()) {
        m_stay->start(m_times.stay);
    }
}

void CTaskNotifyDlg::slideOut()
{
    moveTo(y() + m_times.step);
    if (y() > m_rest.bottom()) {
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
