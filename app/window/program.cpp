#include "app/window/program.h"

#include "app/command_line.h"
#include "app/manager_options.h"
#include "app/task_request.h"
#include "app/window/captured_tasks.h"
#include "app/window/guide.h"
#include "platform/browser_engine.h"
#include "platform/build_config.h"
#include "platform/flash_version.h"
#include "platform/open_external.h"
#include "platform/paths.h"
#include "platform/single_instance.h"
#include "settings/general_options.h"
#include "ui/dialog/message_box.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/layout/window_layout.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QTimer>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using ui::CTollivarDlg;
using ui::SelectedTasks;

namespace {

/// Asks for a start without a window, as a desktop's list of programs to begin with can do.
constexpr auto kHiddenVariable = "TOLLIVAR_START_HIDDEN";

/// The exit status when somebody asks for the end a second time.
constexpr int kInterruptedTwice = 3;

const QString kBrowser = u".\\SniffBrowser.exe"_s;
const QString kPlayer = u".\\ClipPlayer.exe"_s;
const QString kConverter = u".\\quenmoor.exe"_s;

void openInBrowser(const QString &address)
{
    platform::startCompanion(kBrowser, {u"-url"_s, address});
}

/// The player alone when `path` is empty.
void openInPlayer(const QString &path)
{
    platform::startCompanion(kPlayer,
                             path.isEmpty() ? QStringList{} : QStringList{u"-file"_s, path});
}

} // namespace

Program::Program(Engine &engine, settings::SettingsStore settings, language::Languages &languages,
                 DataPaths paths)
    : m_engine(engine)
    , m_settings(std::move(settings))
    , m_paths(std::move(paths))
    , m_options(m_settings)
    , m_languages(languages)
    , m_notes(windowTexts().dialog)
{
    m_options.LoadAll();
    ui::setLayoutMode(ui::layoutModeOf(m_settings.number(settings::keys::kLayoutMode)));
    m_window = std::make_unique<CTollivarDlg>(windowServices());
    m_engine.onEvent([this](std::uint32_t task, tasks::TaskEventCode code) {
        m_window->onTaskEvent(task, code);
    });
    m_dropZone = std::make_unique<DropZone>(*m_window, m_settings, windowTexts().text);
    m_updates = std::make_unique<Updates>(*m_window, m_paths, windowTexts());
    connectWindow();
    connectCompanions();
    applyOptions();
    m_handedOver =
        std::make_unique<HandedOver>(*m_window, platform::instancePlace(m_paths.directory).socket);
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
                m_dropZone->applyLanguage();
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
        .wantsFlashNote = [this] { return m_playerHelp.isNoteWanted(); },
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
    QObject::connect(window, &CTollivarDlg::updateCheckWanted, window,
                     [this] { m_updates->checkNow(); });
    QObject::connect(window, &CTollivarDlg::playerHelpWanted, window,
                     [this] { m_playerHelp.show(*m_window); });
    QObject::connect(&m_playerHelp, &PlayerHelp::upgradeWanted, window,
                     [] { openInBrowser(QString(platform::build::kFlashPage)); });
    QObject::connect(&m_playerHelp, &PlayerHelp::choiceStored, window,
                     [this] { m_window->port().post(platform::AppMessageId::FlashNote, 0, 0); });
    QObject::connect(window, &CTollivarDlg::taskCompleted, window,
                     [this](const tasks::TaskInfo &task, std::uint32_t id) {
                         m_notes.tell(task);
                         if (!task.m_ConvOpts.m_csType.isEmpty()) {
                             m_conversions.start(id, task);
                         }
                     });
    QObject::connect(window, &CTollivarDlg::pageFailed, window,
                     [this] { m_missingBrowser.pageFailed(); });
}

void Program::connectCompanions()
{
    CTollivarDlg *window = m_window.get();
    QObject::connect(window, &CTollivarDlg::browserWanted, window, [this](bool asks) {
        if (asks) {
            platform::startCompanion(kBrowser);
        } else {
            openQuickBrowser();
        }
    });
    const SelectedTasks *selected = &m_window->selected();
    QObject::connect(selected, &SelectedTasks::webPageWanted, window, openInBrowser);
    QObject::connect(selected, &SelectedTasks::playerWanted, window, openInPlayer);
    QObject::connect(selected, &SelectedTasks::fileWanted, window,
                     [](const QString &path) { platform::openPath(path); });
    QObject::connect(selected, &SelectedTasks::folderWanted, window,
                     [](const QString &path) { platform::revealFile(path); });
    QObject::connect(
        selected, &SelectedTasks::profileWanted, window,
        [this](const tasks::TaskInfo &task, std::uint32_t id) { m_conversions.start(id, task); });
    QObject::connect(selected, &SelectedTasks::conversionWanted, window,
                     [this](const std::vector<tasks::TaskInfo> &tasks) {
                         // Where one cannot be converted the others cannot either.
                         for (const tasks::TaskInfo &task : tasks) {
                             if (!convert(task.outputPath())) {
                                 return;
                             }
                         }
                     });
    QObject::connect(&m_notes, &CompletionNotes::playWanted, window, openInPlayer);
    QObject::connect(&m_notes, &CompletionNotes::folderWanted, window,
                     [](const QString &path) { platform::revealFile(path); });
    QObject::connect(&m_notes, &CompletionNotes::conversionWanted, window,
                     [this](const QString &path) { convert(path); });
}

void Program::openQuickBrowser()
{
    if (m_browser) {
        return;
    }
    m_browser =
        std::make_unique<CaptureBrowser>(installedBrowser(platform::kUnknownBrowserVersion));
    QObject::connect(m_browser.get(), &CaptureBrowser::captured, &m_window->intake(),
                     &ui::AddressIntake::addCapturedRecord);
    QObject::connect(
        m_browser.get(), &CaptureBrowser::ended, m_window.get(), [this] { m_browser.reset(); },
        Qt::QueuedConnection);
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
    const settings::CGeneralOptions options = m_options.general();
    const tasks::TaskManagerOptions running = managerOptions(options);
    m_engine.manager().setMaximumDownloads(running.maximumDownloads);
    m_engine.manager().setRetryPolicy(running.retry);
    m_window->applyOptions();
    m_dropZone->applyOptions(options);
    m_updates->setMode(options.m_nCheckUpdate);
}

bool Program::convert(const QString &path)
{
    const bool isStarted = platform::startCompanion(kConverter, {u"-file"_s, path});
    if (!isStarted) {
        ui::MessageBox::question(m_window.get(), QString(platform::build::kProductName),
                                 m_languages.text(u"strNoConverter"_s), ui::MessageBox::Ok);
    }
    return isStarted;
}

void Program::tellMissingBrowser()
{
    auto *note =
        new ui::MessageBox(ui::MessageBox::Information, QString(platform::build::kProductName),
                           m_languages.text(u"strNoBrowser"_s), ui::MessageBox::Ok, m_window.get());
    note->setAttribute(Qt::WA_DeleteOnClose);
    note->open();
}

void Program::start(const QStringList &arguments)
{
    m_window->start(qEnvironmentVariableIntValue(kHiddenVariable) != 0
                        ? CTollivarDlg::Appearance::Hidden
                        : CTollivarDlg::Appearance::Shown);
    // A question needs the event loop, which runs only after this.
    QTimer::singleShot(0, m_window.get(),
                       [this] { m_freeMoment.run([this] { tellSkinProblems(); }); });
    m_updates->checkIfDue(m_options.general().m_nCheckUpdate);
    m_interrupt =
        std::make_unique<platform::InterruptWatch>(kInterruptedTwice, [] { QApplication::exit(); });
    if (const auto address = addressOf(arguments)) {
        m_window->intake().addAddress(*address);
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
        ui::MessageBox::warning(m_window.get(), QString(platform::build::kProductName),
                                lines.join(u'\n'));
    }
}

void Program::shutDown()
{
    // First everything that is seen: what follows may take a moment.
    m_window->hide();
    m_dropZone->leaveScreen();
    m_dropZone.reset();
    CompletionNotes::closeAll();
    m_window->leaveScreen();
    m_conversions.stopAll();
    m_engine.manager().shutDown();
    m_engine.onEvent({});
    m_browser.reset();
    m_updates.reset();
    m_handedOver.reset();
    m_window.reset();
}

} // namespace tollivar::app
