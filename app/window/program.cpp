#include "app/window/program.h"

#include "app/command_line.h"
#include "app/manager_options.h"
#include "app/second_start.h"
#include "app/task_request.h"
#include "app/window/captured_tasks.h"
#include "app/window/guide.h"
#include "platform/browser_engine.h"
#include "platform/build_config.h"
#include "platform/file_ops.h"
#include "platform/flash_version.h"
#include "platform/open_external.h"
#include "platform/paths.h"
#include "platform/quiet_time.h"
#include "platform/single_instance.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using platform::CopyDataId;
using ui::CTollivarDlg;

namespace {

/// Asks for a start without a window, as a desktop's list of programs to begin with can do.
constexpr auto kHiddenVariable = "TOLLIVAR_START_HIDDEN";

/// The exit status when somebody asks for the end a second time.
constexpr int kInterruptedTwice = 3;

} // namespace

Program::Program(Engine &engine, settings::SettingsStore settings, DataPaths paths)
    : m_engine(engine)
    , m_settings(std::move(settings))
    , m_paths(std::move(paths))
    , m_options(m_settings)
    , m_languages(m_settings, platform::programDirectory() + u"/Language"_s)
    , m_inbox([this](const platform::AppMessage &message) { takeAddress(message); })
{
    m_options.LoadAll();
    m_languages.load();
    m_window = std::make_unique<CTollivarDlg>(windowServices());
    m_engine.onEvent([this](std::uint32_t task, tasks::TaskEventCode code) {
        m_window->onTaskEvent(task, code);
    });
    m_dropZone = std::make_unique<ui::CDragDlg>(m_inbox.port(), windowTexts().text);
    m_updates = std::make_unique<Updates>(*m_window, m_paths, windowTexts().dialog);
    QObject::connect(m_window.get(), &CTollivarDlg::updateCheckWanted, m_window.get(),
                     [this] { m_updates->checkNow(); });
    placeDropZone();
    connectDropZone();
    connectWindow();
    connectCompanions();
    applyOptions();
    listen();
}

Program::~Program() = default;

ui::WindowTexts Program::windowTexts()
{
    return {
        .text = [this](const QString &id) { return m_languages.text(id); },
        .dialog =
            [this](const QString &section, const QString &control) {
                return m_languages.dialogText(section, control);
            },
        .menu = [this](const QString &section,
                       const QString &key) { return m_languages.menuText(section, key); },
        .languages = [this] { return m_languages.names(); },
        .currentLanguage = [this] { return m_languages.current(); },
        .applyLanguage =
            [this](const QString &name) {
                m_languages.apply(name);
                m_window->applyLanguage();
            },
    };
}

ui::WindowServices Program::windowServices()
{
    return {
        .manager = m_engine.manager(),
        .settings = m_settings,
        .options = m_options,
        .texts = windowTexts(),
        .taskForAddress =
            [this](const QString &address) {
                return newTask({.address = address, .folder = m_settings.GetLastFolder()});
            },
        .readCapturedText = readCapturedMedia,
        .conversionOf =
            [this](std::uint32_t task) {
                return ui::CListCtrlEx::Conversion{m_conversions.percent(task),
                                                   m_conversions.failure(task)};
            },
        .stopConversion = [this](std::uint32_t task) { m_conversions.stop(task); },
        .wantsFlashNote =
            [this] {
                return !m_settings.flag(settings::keys::kNoRemindFlashVersion) &&
                       !ui::isNewEnough(m_flash);
            },
    };
}

void Program::connectWindow()
{
    CTollivarDlg *window = m_window.get();
    // quit() would ask the window to close, which hides it and ends nothing.
    QObject::connect(window, &CTollivarDlg::exitWanted, window, [] { QApplication::exit(); });
    QObject::connect(window, &CTollivarDlg::homePageWanted, window,
                     [] { platform::openAddress(QString(platform::build::kHomePage)); });
    QObject::connect(window, &CTollivarDlg::helpWanted, window,
                     [] { openGuide(platform::programDirectory()); });
    QObject::connect(window, &CTollivarDlg::settingsWanted, window, [this] { openSettings(); });
    QObject::connect(window, &CTollivarDlg::playerHelpWanted, window, [this] { showPlayerHelp(); });
    QObject::connect(window, &CTollivarDlg::taskCompleted, window,
                     [this](const tasks::TaskInfo &task, std::uint32_t id) {
                         tellCompleted(task);
                         if (!task.m_ConvOpts.m_csType.isEmpty()) {
                             m_conversions.start(id, task);
                         }
                     });
    QObject::connect(window, &CTollivarDlg::pageFailed, window,
                     [this] { m_missingBrowser.pageFailed(); });
    QObject::connect(
        window, &CTollivarDlg::profileWanted, window,
        [this](const tasks::TaskInfo &task, std::uint32_t id) { m_conversions.start(id, task); });
    QObject::connect(window, &CTollivarDlg::conversionWanted, window,
                     [this](const std::vector<tasks::TaskInfo> &tasks) {
                         // Where one cannot be converted the others cannot either.
                         for (const tasks::TaskInfo &task : tasks) {
                             if (!convert(task.outputPath())) {
                                 return;
                             }
                         }
                     });
}

void Program::connectDropZone()
{
    const CTollivarDlg *window = m_window.get();
    ui::CDragDlg *zone = m_dropZone.get();
    QObject::connect(zone, &ui::CDragDlg::doubleClicked, window, &CTollivarDlg::showAndActivate);
    QObject::connect(window, &CTollivarDlg::totalProgressChanged, zone, &ui::CDragDlg::setProgress);
    QObject::connect(window, &CTollivarDlg::dropZoneToggled, zone, [this, zone] {
        m_zonePresence.toggle();
        zone->setVisible(m_zonePresence.isShown());
    });
    QObject::connect(window, &CTollivarDlg::minimisedChanged, zone, [this, zone](bool is) {
        m_zonePresence.setWindowMinimised(is);
        zone->setVisible(m_zonePresence.isShown());
    });
    QObject::connect(window, &CTollivarDlg::activatedByPerson, zone, [zone] {
        if (zone->isVisible()) {
            zone->raise();
        }
    });
}

void Program::connectCompanions()
{
    CTollivarDlg *window = m_window.get();
    QObject::connect(window, &CTollivarDlg::browserWanted, window, [this](bool asks) {
        if (asks) {
            platform::startCompanion(u".\\SniffBrowser.exe"_s);
        } else {
            openQuickBrowser();
        }
    });
    QObject::connect(window, &CTollivarDlg::webPageWanted, window, [](const QString &address) {
        platform::startCompanion(u".\\SniffBrowser.exe"_s, {u"-url"_s, address});
    });
    QObject::connect(window, &CTollivarDlg::playerWanted, window, [](const QString &path) {
        platform::startCompanion(u".\\ClipPlayer.exe"_s,
                                 path.isEmpty() ? QStringList{} : QStringList{u"-file"_s, path});
    });
    QObject::connect(window, &CTollivarDlg::fileWanted, window,
                     [](const QString &path) { platform::openPath(path); });
    QObject::connect(
        window, &CTollivarDlg::folderWanted, window,
        [](const QString & /*folder*/, const QString &path) { platform::revealFile(path); });
}

void Program::openQuickBrowser()
{
    if (m_browser) {
        return;
    }
    m_browser = std::make_unique<CaptureBrowser>(platform::kUnknownBrowserVersion);
    QObject::connect(m_browser.get(), &CaptureBrowser::captured, m_window.get(),
                     &CTollivarDlg::addCapturedRecord);
    QObject::connect(
        m_browser.get(), &CaptureBrowser::ended, m_window.get(), [this] { m_browser.reset(); },
        Qt::QueuedConnection);
}

const settings::CGeneralOptions &Program::generalOptions() const
{
    return dynamic_cast<const settings::CGeneralOptions &>(
        *m_options.Get(settings::COptionsManager::kGeneral));
}

void Program::openSettings()
{
    const ui::WindowTexts texts = windowTexts();
    ui::CSettingsDialog dialog(m_window.get(), m_options, texts,
                               ui::clipboardWatchOn(QGuiApplication::platformName()));
    QObject::connect(&dialog, &ui::CSettingsDialog::optionsChanged, m_window.get(),
                     [this] { applyOptions(); });
    dialog.exec();
}

void Program::applyOptions()
{
    const auto &options = generalOptions();
    const tasks::TaskManagerOptions running = managerOptions(options);
    m_engine.manager().setMaximumDownloads(running.maximumDownloads);
    m_engine.manager().setRetryPolicy(running.retry);
    m_window->applyOptions();
    m_dropZone->setMonitoring(options.m_bMonitorUrl);
    m_zonePresence.setOptions(
        {.isWanted = options.m_bShowDragZone, .standsForWindow = options.m_bMinimizeDragTask});
    m_dropZone->setVisible(m_zonePresence.isShown());
}

void Program::showPlayerHelp()
{
    const ui::WindowTexts texts = windowTexts();
    auto *dialog =
        new ui::CCantPlayDlg(m_window.get(), m_settings, texts, platform::flashPlayerVersion());
    QObject::connect(dialog, &ui::CCantPlayDlg::upgradeWanted, m_window.get(), [] {
        platform::startCompanion(u".\\SniffBrowser.exe"_s,
                                 {u"-url"_s, QString(platform::build::kFlashPage)});
    });
    QObject::connect(dialog, &ui::CCantPlayDlg::choiceStored, m_window.get(),
                     [this] { m_window->port().post(platform::AppMessageId::FlashNote, 0, 0); });
    dialog->show();
}

void Program::tellCompleted(const tasks::TaskInfo &task)
{
    platform::askForQuietTime(m_window.get(), [this, task](platform::Notices notices) {
        if (notices == platform::Notices::Welcome) {
            showCompleted(task);
        }
    });
}

void Program::showCompleted(const tasks::TaskInfo &task)
{
    m_sound.play(platform::programDirectory() + u"/sound/sound.wav"_s);
    auto *popup = new ui::CTaskNotifyDlg(
        {task.strOutputFolder, task.strOutputName, task.strFileType}, windowTexts().dialog);
    QObject::connect(popup, &ui::CTaskNotifyDlg::playWanted, m_window.get(),
                     &CTollivarDlg::playerWanted);
    QObject::connect(popup, &ui::CTaskNotifyDlg::folderWanted, m_window.get(),
                     &CTollivarDlg::folderWanted);
    QObject::connect(popup, &ui::CTaskNotifyDlg::conversionWanted, m_window.get(),
                     [this](const QString &path) { convert(path); });
    popup->showFor({});
}

void Program::placeDropZone()
{
    constexpr int kFromEdge = 24;
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const auto place = m_settings.text(settings::keys::kDropZonePlace).split(u',');
    const QPoint wanted(place.value(0).toInt(), place.value(1).toInt());
    const bool isUsable = place.size() == 2 && area.contains(wanted);
    m_dropZone->move(
        isUsable ? wanted
                 : QPoint(area.right() - m_dropZone->width() - kFromEdge, area.top() + kFromEdge));
    QObject::connect(m_dropZone.get(), &ui::CDragDlg::moveEnded, m_window.get(),
                     [this](QPoint moved) {
                         m_settings.setText(settings::keys::kDropZonePlace,
                                            u"%1,%2"_s.arg(moved.x()).arg(moved.y()));
                     });
}

bool Program::convert(const QString &path)
{
    const bool isStarted = platform::startCompanion(u".\\quenmoor.exe"_s, {u"-file"_s, path});
    if (!isStarted) {
        QMessageBox::question(m_window.get(), QString(platform::build::kProductName),
                              m_languages.text(u"strNoConverter"_s), QMessageBox::Ok);
    }
    return isStarted;
}

void Program::tellMissingBrowser()
{
    auto *note =
        new QMessageBox(QMessageBox::Information, QString(platform::build::kProductName),
                        m_languages.text(u"strNoBrowser"_s), QMessageBox::Ok, m_window.get());
    note->setAttribute(Qt::WA_DeleteOnClose);
    note->open();
}

void Program::takeAddress(const platform::AppMessage &message)
{
    if (message.id == platform::AppMessageId::AddressReady) {
        m_window->offerAddress(m_dropZone->receivedText(), message.first == 1
                                                               ? ui::AddressOrigin::Clipboard
                                                               : ui::AddressOrigin::Dropped);
    }
}

void Program::listen()
{
    const auto place = platform::instancePlace(m_paths.directory);
    auto server = platform::LocalMessageServer::listen(
        place.socket,
        [this](CopyDataId id, const QByteArray &payload) { takeMessage(id, payload); });
    if (server) {
        m_messages = std::move(*server);
    } else {
        qWarning("later starts cannot hand anything over: %s", qPrintable(server.error().text));
    }
}

void Program::takeMessage(CopyDataId id, const QByteArray &payload)
{
    switch (id) {
    case CopyDataId::BringToFront:
        m_window->showAndActivate();
        break;
    case CopyDataId::CommandLine:
        if (const auto arguments = readCommandLineMessage(payload)) {
            m_window->addAddress(addressOf(*arguments).value_or(QString()));
        }
        break;
    case CopyDataId::CapturedText:
        m_window->addCapturedText(QString::fromUtf8(payload));
        break;
    case CopyDataId::AddTasks:
        addTasks(payload);
        break;
    }
}

void Program::addTasks(const QByteArray &requests)
{
    const auto decoded = decodeTaskRequests(requests);
    if (!decoded) {
        qWarning("tasks were not taken over: %s", qPrintable(decoded.error().text));
        return;
    }
    for (const TaskRequest &request : *decoded) {
        if (const auto task = newTask(request)) {
            m_window->addNewTask(*task);
        } else {
            qWarning("a task was not taken over: %s", qPrintable(task.error().text));
        }
    }
}

void Program::start(const QStringList &arguments)
{
    m_window->start(qEnvironmentVariableIntValue(kHiddenVariable) != 0
                        ? CTollivarDlg::Appearance::Hidden
                        : CTollivarDlg::Appearance::Shown);
    // A question needs the event loop, which runs only after this.
    QTimer::singleShot(0, m_window.get(), [this] { tellSkinProblems(); });
    m_updates->checkIfDue(generalOptions().m_nCheckUpdate);
    m_interrupt =
        std::make_unique<platform::InterruptWatch>(kInterruptedTwice, [] { QApplication::exit(); });
    if (const auto address = addressOf(arguments)) {
        m_window->addAddress(*address);
    }
}

void Program::tellSkinProblems()
{
    // More than a few would not fit the screen; the log has them all.
    constexpr std::size_t kMost = 10;
    QStringList lines{m_languages.text(u"strSkinProblems"_s)};
    for (const auto &problem : DuiLib::CPaintManagerUI::takeProblems()) {
        if (static_cast<std::size_t>(lines.size()) <= kMost) {
            lines.append(problem.toString());
        }
    }
    if (lines.size() > 1) {
        QMessageBox::warning(m_window.get(), QString(platform::build::kProductName),
                             lines.join(u'\n'));
    }
}

void Program::shutDown()
{
    // First everything that is seen: what follows may take a moment.
    m_dropZone->hide();
    ui::CTaskNotifyDlg::closeAll();
    m_window->leaveScreen();
    m_browser.reset();
    m_conversions.stopAll();
    m_engine.manager().shutDown();
    m_engine.onEvent({});
    m_updates.reset();
    m_messages.reset();
    m_dropZone.reset();
    m_window.reset();
}

} // namespace tollivar::app
