#include "ui/main_window/tollivar_dlg.h"

#include "app/language/menu_tables.h"
#include "fetch/text/file_naming.h"
#include "platform/build_config.h"
#include "platform/file_ops.h"
#include "settings/general_options.h"
#include "ui/dialogs/add_task_dlg.h"
#include "ui/main_window/caption_texts.h"
#include "ui/main_window/main_menus.h"
#include "ui/skin/text_ui.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QToolButton>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using DuiLib::RequiredControl;
using platform::AppMessageId;
using tasks::TaskEventCode;

namespace {

constexpr std::array kControls = {
    RequiredControl{"Button"_L1, "btnClose"_L1},
    RequiredControl{"Button"_L1, "btnMax"_L1},
    RequiredControl{"Button"_L1, "btnRestore"_L1},
    RequiredControl{"Button"_L1, "btnMin"_L1},
    RequiredControl{"Option"_L1, "btnAll"_L1},
    RequiredControl{"Option"_L1, "btnDownloading"_L1},
    RequiredControl{"Option"_L1, "btnDownloaded"_L1},
    RequiredControl{"Button"_L1, "btnHome"_L1},
    RequiredControl{"Button"_L1, "btnMenu"_L1},
    RequiredControl{"Text"_L1, "textCaption"_L1},
    RequiredControl{"Text"_L1, "tCopyright"_L1},
    RequiredControl{"WindowCtrl"_L1, "wndDownloadList"_L1},
    RequiredControl{"Label"_L1, "ctrlhide"_L1},
    RequiredControl{"HorizontalLayout"_L1, "layoutHome"_L1},
    RequiredControl{"Button"_L1, "btnAddUrl"_L1},
    RequiredControl{"Button"_L1, "btnBrowser"_L1},
    RequiredControl{"Button"_L1, "btnPlayer"_L1},
    RequiredControl{"Button"_L1, "btnStart"_L1},
    RequiredControl{"Button"_L1, "btnStop"_L1},
    RequiredControl{"Button"_L1, "btnRemove"_L1},
    RequiredControl{"Button"_L1, "btnClearAll"_L1},
    RequiredControl{"Button"_L1, "btnExit"_L1},
};

/// How often the line below the list counts anew while something runs.
constexpr std::chrono::milliseconds kTotalsInterval{500};

const QString kProgram = platform::build::kProductName;

/// The address in dropped or pasted data; nothing for files and for what is no text.
QString addressIn(const QMimeData &data)
{
    const auto addresses = data.urls();
    for (const QUrl &address : addresses) {
        if (address.isLocalFile()) {
            return {};
        }
    }
    if (!addresses.isEmpty()) {
        return addresses.front().toString();
    }
    return data.text().section(u'\n', 0, 0).trimmed();
}

} // namespace

CTollivarDlg::CTollivarDlg(const WindowServices &services)
    : CUILibDialog(nullptr, Qt::Window)
    , m_services(services)
    , m_commands(services.manager, *this)
    , m_inbox([this](const platform::AppMessage &message) { handle(message); })
{
    setWindowTitle(kProgram);
    setWindowIcon(QIcon(DuiLib::CPaintManagerUI::imagePath(u"img/logo.svg"_s)));
    setAcceptDrops(true);
    createFace(u"AppTollivar.xml"_s, kControls);
    setMinimumSize(paintManager().GetMinInfo());
    bindList();
    m_menus =
        std::make_unique<MainMenus>(m_services.texts, [this](int command) { runCommand(command); });
    m_menus->addProfiles([this] { return profilesForSelected(); },
                         [this](const QString &profile) { convertSelected(profile); });
    m_menus->addCopyDetails([this] { copyDetails(); });
    bindTray();
    bindKeys();
    m_totals = new QTimer(this);
    connect(m_totals, &QTimer::timeout, this, &CTollivarDlg::refreshTotals);
    m_totals->start(kTotalsInterval);
    applyLanguage();
}

CTollivarDlg::~CTollivarDlg() = default;

platform::AppMessagePort CTollivarDlg::port() const
{
    return m_inbox.port();
}

QToolButton &CTollivarDlg::button(QLatin1StringView name) const
{
    return *findChild<QToolButton *>(QString(name));
}

QString CTollivarDlg::text(const char16_t *id) const
{
    return m_services.texts.text(QString::fromUtf16(id));
}

void CTollivarDlg::bindList()
{
    m_list = new CListCtrlEx(m_services.texts.text);
    m_list->setObjectName(u"taskList"_s);
    bindNativeChild(u"wndDownloadList"_s, *m_list);
    if (m_services.conversionOf) {
        m_list->onConversion(m_services.conversionOf);
    }
    m_list->attach(&m_services.manager);
    applyOptions();
    m_services.manager.onRowsChanged([this] { m_list->refreshRows(); });
    connect(m_list, &CListCtrlEx::addWanted, this, [this] { openAddTask({}); });
    connect(m_list, &CListCtrlEx::removeWanted, this, &CTollivarDlg::removeSelected);
    connect(m_list, &CListCtrlEx::toggleWanted, this, [this] {
        const auto chosen = m_list->selectedRows();
        const bool anyRuns = std::any_of(chosen.begin(), chosen.end(), [this](int row) {
            const auto *worker = m_services.manager.workerAt(row);
            return worker != nullptr && (tasks::isRunning(worker->state()) ||
                                         worker->state() == tasks::TaskState::Waiting);
        });
        anyRuns ? m_commands.stopSelected() : startSelected();
    });
    connect(m_list, &CListCtrlEx::activated, this, &CTollivarDlg::playSelected);
    connect(m_list, &CListCtrlEx::menuWanted, this,
            [this](QPoint place) { m_menus->list().popup(place); });
}

void CTollivarDlg::bindTray()
{
    m_tray = std::make_unique<TrayIcon>(m_menus->tray());
    connect(m_tray.get(), &TrayIcon::doubleClicked, this, &CTollivarDlg::toggleWindow);
    // A menu of a program in the background would stay when one clicks elsewhere.
    connect(m_tray.get(), &TrayIcon::menuWanted, this, [this] {
        if (isVisible() && !isMinimized()) {
            raise();
            activateWindow();
        }
    });
}

void CTollivarDlg::bindKeys()
{
    const auto bind = [this](const QKeySequence &keys, auto action) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    bind(QKeySequence::New, [this] { openAddTask({}); });
    bind(QKeySequence::Paste, [this] {
        offerAddress(addressIn(*QGuiApplication::clipboard()->mimeData()), AddressOrigin::Dropped);
    });
    bind(QKeySequence(Qt::CTRL | Qt::Key_B), [this] { Q_EMIT browserWanted(false); });
    bind(QKeySequence(Qt::Key_F5), [this] { startSelected(); });
    bind(QKeySequence(Qt::Key_F6), [this] { stopSelected(); });
    bind(QKeySequence(Qt::Key_F1), [this] { Q_EMIT helpWanted(); });
    bind(QKeySequence::Quit, [this] { Q_EMIT exitWanted(); });
    bind(QKeySequence(Qt::Key_F10), [this] { handleClick(u"btnMenu"_s); });
}

void CTollivarDlg::applyOptions()
{
    const auto *options = dynamic_cast<const settings::CGeneralOptions *>(
        m_services.options.Get(settings::COptionsManager::kGeneral));
    if (options != nullptr) {
        m_list->setRetrySetting(options->m_nMaxRetry);
        m_minimisesAfterCapture = options->m_bMinimizeDragTask;
    }
}

void CTollivarDlg::applyLanguage()
{
    struct Named {
        QLatin1StringView control;
        const char16_t *text = u"";
        const char16_t *tip = u"";
    };
    static constexpr std::array kNamed = {
        Named{"btnAddUrl"_L1, u"strBtnAddUrl", u"strTipAddFile"},
        Named{"btnBrowser"_L1, u"strBtnBrowser", u"strTipBrowser"},
        Named{"btnPlayer"_L1, u"strBtnPlayer", u"strTipPlay"},
        Named{"btnStart"_L1, u"strBtnStart", u"strTipStartTask"},
        Named{"btnStop"_L1, u"strBtnStop", u"strTipStopTask"},
        Named{"btnRemove"_L1, u"strBtnRemove", u"strTipRemoveTask"},
        Named{"btnClearAll"_L1, u"strBtnClearAll", u"strTipClearAll"},
        Named{"btnExit"_L1, u"strExit", u"strTipExit"},
        Named{"btnHome"_L1, u"strBtnHome", u"strBtnHome"},
        Named{"btnMenu"_L1, u"strBtnMenu", u"strBtnMenu"},
        Named{"btnMin"_L1, u"strTipMinimize", u"strTipMinimize"},
        Named{"btnMax"_L1, u"strTipMaximize", u"strTipMaximize"},
        Named{"btnRestore"_L1, u"strTipRestore", u"strTipRestore"},
        Named{"btnClose"_L1, u"strTipClose", u"strTipClose"},
        Named{"btnAll"_L1, u"strFilterAll", u"strFilterAll"},
    };
    for (const auto &[name, label, tip] : kNamed) {
        QToolButton &control = button(name);
        control.setText(text(label));
        control.setToolTip(text(tip));
        control.setAccessibleName(text(tip));
    }
    m_list->applyLanguage();
    showFlashNote();
    refreshCaptions();
    refreshTotals();
}

void CTollivarDlg::start(Appearance appearance)
{
    if (appearance == Appearance::Shown || !m_tray->isThere()) {
        show();
    }
}

void CTollivarDlg::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kClick) {
        handleClick(event.name);
    } else if (event.type == DuiLib::events::kLink && event.name == "tCopyright"_L1) {
        Q_EMIT homePageWanted();
    } else if (event.type == DuiLib::events::kLink) {
        Q_EMIT playerHelpWanted();
    }
}

void CTollivarDlg::handle(const platform::AppMessage &message)
{
    switch (message.id) {
    case AppMessageId::AddPendingAddress:
        addPendingAddress();
        break;
    case AppMessageId::CapturedTexts:
        takeCapturedTexts();
        break;
    case AppMessageId::FlashNote:
        showFlashNote();
        break;
    default:
        break;
    }
}

void CTollivarDlg::onTaskEvent(std::uint32_t taskId, TaskEventCode code)
{
    const auto *worker = m_services.manager.worker(taskId);
    if (worker != nullptr) {
        redrawRow(m_services.manager.rowOf(taskId));
    }
    if (!tasks::endsRun(code)) {
        return;
    }
    refreshCaptions();
    if (worker != nullptr && worker->state() == tasks::TaskState::Completed &&
        code == TaskEventCode::Completed) {
        m_total.countCompleted();
        m_list->refreshRows();
        Q_EMIT taskCompleted(worker->record(), taskId);
    }
    if (worker != nullptr && worker->state() == tasks::TaskState::Failed &&
        worker->previousState() == tasks::TaskState::ResolvingPage) {
        Q_EMIT pageFailed();
    }
}

void CTollivarDlg::addAddress(const QString &address)
{
    if (address.isEmpty()) {
        return;
    }
    m_pendingAddresses.append(address);
    port().post(AppMessageId::AddPendingAddress, 0, 0);
}

void CTollivarDlg::addPendingAddress()
{
    if (m_pendingAddresses.isEmpty()) {
        return;
    }
    const auto task = m_services.taskForAddress(m_pendingAddresses.takeFirst());
    if (task) {
        addNewTask(*task);
    } else {
        qWarning("the address was not added: %s", qPrintable(task.error().text));
    }
}

void CTollivarDlg::addNewTask(const tasks::TaskInfo &task)
{
    const std::uint32_t id = m_services.manager.addTask(task, tasks::TaskOrigin::New);
    m_services.manager.start(id);
    m_list->refreshRows();
    refreshCaptions();
}

void CTollivarDlg::addCapturedText(const QString &text)
{
    m_capturedTexts.append(text);
    port().post(AppMessageId::CapturedTexts, 0, 0);
}

void CTollivarDlg::takeCapturedTexts()
{
    showAndActivate();
    if (m_capturedTexts.isEmpty()) {
        return;
    }
    for (const CapturedMedia &media : m_services.readCapturedText(m_capturedTexts.takeLast())) {
        addCaptured(media);
    }
    refreshCaptions();
}

void CTollivarDlg::addCaptured(const CapturedMedia &media)
{
    if (const auto chosen = askAboutCaptured(media)) {
        if (m_minimisesAfterCapture) {
            showMinimized();
        }
        storeCaptured(media, *chosen);
    }
    // One that the next dialog does not take either comes back.
    const QStringList kept = std::exchange(m_keptAddresses, {});
    for (const QString &address : kept) {
        offerAddress(address, AddressOrigin::Dropped);
    }
}

std::optional<tasks::TaskInfo> CTollivarDlg::askAboutCaptured(const CapturedMedia &media)
{
    CAddTaskDlg dialog(this, m_services.settings, m_services.texts,
                       {media.task.strOriURL, media.title});
    // One may be open already: then it is asked again when this one is through.
    const QPointer<CAddTaskDlg> below = std::exchange(m_addTask, &dialog);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    m_addTask = below;
    return isAccepted ? std::optional(dialog.task()) : std::nullopt;
}

void CTollivarDlg::storeCaptured(const CapturedMedia &media, const tasks::TaskInfo &chosen)
{
    tasks::TaskInfo task = media.task;
    task.m_ConvOpts = chosen.m_ConvOpts;
    task.strOutputFolder = folderOfCaptured(chosen.strOutputFolder, media.title, task.strOriURL);
    if (const auto made = platform::makeFolders(task.strOutputFolder); !made) {
        QMessageBox::warning(this, kProgram, text(u"strMsgInvalidFolder"));
        return;
    }
    task.strOutputName = fetch::cleanName(chosen.strOutputName, u'-');
    addNewTask(task);
}

void CTollivarDlg::addCapturedRecord(const QString &record)
{
    for (const CapturedMedia &media : m_services.readCapturedText(record)) {
        tasks::TaskInfo chosen;
        chosen.strOutputFolder = m_services.settings.GetLastFolder();
        chosen.strOutputName = media.title.isEmpty() ? media.task.strOriURL.right(8) : media.title;
        storeCaptured(media, chosen);
    }
    port().post(AppMessageId::CapturedTexts, 0, 0);
}

void CTollivarDlg::offerAddress(const QString &address, AddressOrigin origin)
{
    if (origin == AddressOrigin::Clipboard && m_copiedText.startsWith(address)) {
        return;
    }
    if (openAddTask(address) == DialogResult::Accepted && m_minimisesAfterCapture) {
        showMinimized();
    }
}

CTollivarDlg::DialogResult CTollivarDlg::openAddTask(const QString &address)
{
    showAndActivate();
    if (m_addTask != nullptr) {
        m_addTask->raise();
        m_addTask->activateWindow();
        if (!m_addTask->setAddress(address) && !address.isEmpty()) {
            m_keptAddresses.append(address);
        }
        return DialogResult::AlreadyOpen;
    }
    CAddTaskDlg dialog(this, m_services.settings, m_services.texts, {address, {}});
    m_addTask = &dialog;
    if (dialog.exec() != QDialog::Accepted) {
        return DialogResult::Cancelled;
    }
    addNewTask(dialog.task());
    return DialogResult::Accepted;
}

void CTollivarDlg::addTask()
{
    openAddTask({});
}

void CTollivarDlg::showFlashNote()
{
    const bool isWanted = m_services.wantsFlashNote && m_services.wantsFlashNote();
    auto &caption = control<DuiLib::CTextUI>("textCaption"_L1);
    caption.setLinkColors(Qt::white, QColor(0xD6, 0xE6, 0xF8));
    caption.setMarkup(isWanted ? text(u"strNoteFlashOld") : u"{b}"_s + kProgram + u"{/b}"_s);
}

void CTollivarDlg::refreshCaptions()
{
    auto &manager = m_services.manager;
    button("btnDownloading"_L1)
        .setText(filterCaption(text(u"strFilterDownloading"), manager.unfinishedCount()));
    button("btnDownloaded"_L1)
        .setText(filterCaption(text(u"strFilterDownloaded"), manager.completedCount()));
}

void CTollivarDlg::refreshTotals()
{
    auto &manager = m_services.manager;
    auto &label = control<QLabel>("ctrlhide"_L1);
    const QString totals = totalsText(text(u"strTotals"), manager.runningCount(),
                                      manager.waitingCount(), manager.totalSpeed());
    if (label.text() != totals) {
        label.setText(totals);
    }
    const auto share =
        m_total.update(manager.runningCount(), manager.waitingCount(), manager.totalReached());
    if (m_share != share) {
        m_share = share;
        Q_EMIT totalProgressChanged(share);
    }
}

std::vector<int> CTollivarDlg::selectedRows() const
{
    return m_list->selectedRows();
}

void CTollivarDlg::selectRows(const std::vector<int> &rows)
{
    m_list->selectRows(rows);
}

void CTollivarDlg::redrawRow(int row)
{
    m_list->redrawRow(row);
}

void CTollivarDlg::refreshRows()
{
    m_list->refreshRows();
}

void CTollivarDlg::closeToTray()
{
    close();
    showBalloonOnce();
}

void CTollivarDlg::showBalloonOnce()
{
    constexpr int kBalloons = 3;
    const int shown = m_services.settings.GetTrayInfoShowTime();
    if (shown >= kBalloons) {
        return;
    }
    m_services.settings.SetTrayInfoShowTime(shown + 1);
    if (m_tray->isThere()) {
        m_tray->showBalloon(text(u"strTrayBalloon"));
    }
}

void CTollivarDlg::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (m_tray != nullptr && m_tray->isThere()) {
        hide();
        return;
    }
    if (!m_hasToldAboutTray) {
        m_hasToldAboutTray = true;
        QMessageBox::information(this, kProgram, text(u"strNoTray"));
    }
    // Hidden without a tray icon, the window could never be found again.
    showMinimized();
}

void CTollivarDlg::reject()
{
    close();
}

void CTollivarDlg::changeEvent(QEvent *event)
{
    CUILibDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && !isMinimized()) {
        button("btnMax"_L1).setVisible(!isMaximized());
        button("btnRestore"_L1).setVisible(isMaximized());
    }
    tellIfMinimised();
}

void CTollivarDlg::showEvent(QShowEvent *event)
{
    CUILibDialog::showEvent(event);
    tellIfMinimised();
}

void CTollivarDlg::hideEvent(QHideEvent *event)
{
    CUILibDialog::hideEvent(event);
    tellIfMinimised();
}

void CTollivarDlg::tellIfMinimised()
{
    const bool isMinimised = isVisible() && isMinimized();
    if (m_isMinimised != isMinimised) {
        m_isMinimised = isMinimised;
        Q_EMIT minimisedChanged(isMinimised);
    }
}

void CTollivarDlg::toggleWindow()
{
    if (isVisible() && !isMinimized()) {
        close();
    } else {
        showAndActivate();
    }
}

void CTollivarDlg::showAndActivate()
{
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    activateWindow();
    Q_EMIT activatedByPerson();
}

void CTollivarDlg::leaveScreen()
{
    hide();
    m_totals->stop();
    m_tray->remove();
}

void CTollivarDlg::dragEnterEvent(QDragEnterEvent *event)
{
    if (!addressIn(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void CTollivarDlg::dropEvent(QDropEvent *event)
{
    const QString address = addressIn(*event->mimeData());
    event->acceptProposedAction();
    // The program that drags waits for our answer, and must not wait for a dialog.
    QTimer::singleShot(0, this, [this, address] { offerAddress(address, AddressOrigin::Dropped); });
}

} // namespace tollivar::ui
