#include "ui/main_window/tollivar_dlg.h"

#include "app/language/menu_tables.h"
#include "platform/build_config.h"
#include "settings/general_options.h"
#include "ui/dialog/message_box.h"
#include "ui/main_window/caption_texts.h"
#include "ui/main_window/main_menus.h"
#include "ui/main_window/window_keys.h"
#include "ui/main_window/window_memory.h"
#include "ui/skin/text_ui.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
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

const QString kProgram = platform::build::kProductName;

} // namespace

CTollivarDlg::CTollivarDlg(const WindowServices &services)
    : CUILibDialog(nullptr, Qt::Window)
    , m_services(services)
    , m_commands(services.manager, *this, services.stopConversion)
    , m_intake(*this, m_services)
    , m_inbox([this](const platform::AppMessage &message) { handle(message); })
{
    setWindowTitle(kProgram);
    setWindowIcon(QIcon(DuiLib::CPaintManagerUI::imagePath(u"img/logo.svg"_s)));
    setAcceptDrops(true);
    createFace(u"AppTollivar.xml"_s, kControls);
    setLeastSize(paintManager().GetMinInfo());
    bindList();
    bindIntake();
    bindMenus();
    bindTray();
    bindKeys();
    m_totals = std::make_unique<TotalsLine>(control<QLabel>("ctrlhide"_L1), m_services.manager,
                                            m_services.texts.text);
    applyLanguage();
    giveListTheKeyboard();
    m_memory = std::make_unique<WindowMemory>(*this, *m_list, m_services.settings);
}

CTollivarDlg::~CTollivarDlg() = default;

void CTollivarDlg::giveListTheKeyboard()
{
    // A click on a button leaves it there: the next key is for what is selected.
    const auto buttons = findChildren<QToolButton *>();
    for (QToolButton *tool : buttons) {
        if (tool->focusPolicy() == Qt::StrongFocus) {
            tool->setFocusPolicy(Qt::TabFocus);
        }
    }
    m_list->setFocus();
}

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
    m_selected =
        std::make_unique<SelectedTasks>(*m_list, m_services.manager, m_services.texts.text);
    connect(m_list, &CListCtrlEx::addWanted, this, &CTollivarDlg::addTask);
    connect(m_list, &CListCtrlEx::selectionMayDiffer, this, &CTollivarDlg::enableButtons);
    connect(m_list, &CListCtrlEx::toggleWanted, this, &CTollivarDlg::toggleSelected);
    connect(m_list, &CListCtrlEx::rowActivated, m_selected.get(), &SelectedTasks::playRow);
    connect(m_list, &CListCtrlEx::menuWanted, this,
            [this](QPoint place) { m_menus->list().popup(place); });
}

void CTollivarDlg::bindIntake()
{
    connect(&m_intake, &AddressIntake::windowWanted, this, &CTollivarDlg::showAndActivate);
    connect(&m_intake, &AddressIntake::tasksAdded, this, &CTollivarDlg::refreshTasks);
    connect(m_selected.get(), &SelectedTasks::copied, &m_intake, &AddressIntake::setCopiedText);
}

void CTollivarDlg::bindMenus()
{
    m_menus =
        std::make_unique<MainMenus>(m_services.texts, [this](int command) { runCommand(command); });
    m_menus->addProfiles([this] { return m_selected->profiles(); },
                         [this](const QString &profile) { m_selected->convertTo(profile); });
    m_menus->enableListBy([this](int command) { return m_selected->can(command); });
    m_menus->addCopyDetails([this] { m_selected->copyDetails(); },
                            [this] { return m_selected->areThere(); });
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
    const auto bind = [this](QKeyCombination keys, auto action) {
        auto *shortcut = new QShortcut(QKeySequence(keys), this);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    for (const WindowKey &key : windowKeys()) {
        if (key.command == 0) {
            bind(key.keys, [this, name = QString(key.button)] { handleClick(name); });
        } else {
            bind(key.keys, [this, command = key.command] {
                if (m_selected->can(command)) {
                    runCommand(command);
                }
            });
        }
    }
    bind(Qt::CTRL | Qt::Key_A, [this] { m_list->selectAll(); });
    bind(Qt::CTRL | Qt::Key_V, [this] {
        // The system has none when no program owns the clipboard.
        const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
        m_intake.offerAddress(copied == nullptr ? QString() : addressIn(*copied),
                              AddressOrigin::Dropped);
    });
    bind(Qt::CTRL | Qt::Key_B, [this] { Q_EMIT browserWanted(false); });
}

void CTollivarDlg::applyOptions()
{
    const settings::CGeneralOptions options = m_services.options.general();
    m_list->setRetrySetting(options.m_nMaxRetry);
    m_intake.setMinimisesAfterwards(options.m_bMinimizeDragTask);
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
        control.setToolTip(withKeys(text(tip), keysOf(name)));
        control.setAccessibleName(text(tip));
    }
    button("btnDownloading"_L1).setToolTip(text(u"strFilterDownloading"));
    button("btnDownloaded"_L1).setToolTip(text(u"strFilterDownloaded"));
    control<QLabel>("tCopyright"_L1).setToolTip(text(u"strBtnHome"));
    m_list->applyLanguage();
    showFlashNote();
    refreshCaptions();
    enableButtons();
    m_totals->refresh();
}

void CTollivarDlg::start(Appearance appearance)
{
    if (appearance == Appearance::Shown) {
        show();
        return;
    }
    // At the log-in the panel may come up after us.
    m_trayWait = std::make_unique<TrayWait>([this] { return m_tray->isThere(); });
    connect(m_trayWait.get(), &TrayWait::givenUp, this, &QWidget::show);
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
    if (message.id == AppMessageId::FlashNote) {
        showFlashNote();
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
        m_totals->countCompleted();
        m_list->refreshRows();
        Q_EMIT taskCompleted(worker->record(), taskId);
    }
    if (worker != nullptr && worker->state() == tasks::TaskState::Failed &&
        worker->previousState() == tasks::TaskState::ResolvingPage) {
        Q_EMIT pageFailed();
    }
}

void CTollivarDlg::addTask()
{
    m_intake.askForAddress();
}

void CTollivarDlg::refreshTasks()
{
    m_list->refreshRows();
    refreshCaptions();
}

void CTollivarDlg::showFlashNote()
{
    const bool isWanted = m_services.wantsFlashNote && m_services.wantsFlashNote();
    auto &caption = control<DuiLib::CTextUI>("textCaption"_L1);
    caption.setLinkColors(Qt::white, QColor(0xD6, 0xE6, 0xF8));
    caption.setMarkup(isWanted ? text(u"strNoteFlashOld") : u"{b}"_s + kProgram + u"{/b}"_s);
}

void CTollivarDlg::enableButtons()
{
    const bool isSelected = m_list->selectionModel()->hasSelection();
    // Without a selection Start still leaves the downloaded tasks for the others.
    const bool canStart =
        isSelected || m_services.manager.filter() == tasks::TaskFilter::Downloaded;
    const auto enable = [this](QLatin1StringView name, bool can) {
        QToolButton &tool = button(name);
        if (!can && focusWidget() == &tool) {
            // Qt would hand the keyboard to the next button, and the next Space to that.
            m_list->setFocus();
        }
        tool.setEnabled(can);
    };
    enable("btnStart"_L1, canStart);
    enable("btnStop"_L1, isSelected);
    enable("btnRemove"_L1, isSelected);
}

void CTollivarDlg::refreshCaptions()
{
    auto &manager = m_services.manager;
    button("btnDownloading"_L1)
        .setText(filterCaption(text(u"strFilterDownloading"), manager.unfinishedCount()));
    button("btnDownloaded"_L1)
        .setText(filterCaption(text(u"strFilterDownloaded"), manager.completedCount()));
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
        MessageBox::information(this, kProgram, text(u"strNoTray"));
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
    m_trayWait.reset();
    show();
    raise();
    activateWindow();
    Q_EMIT activatedByPerson();
}

void CTollivarDlg::leaveScreen()
{
    m_trayWait.reset();
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
    QTimer::singleShot(0, this,
                       [this, address] { m_intake.offerAddress(address, AddressOrigin::Dropped); });
}

} // namespace tollivar::ui
