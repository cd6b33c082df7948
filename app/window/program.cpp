#include "app/window/program.h"

#include "app/command_line.h"
#include "app/second_start.h"
#include "app/task_request.h"
#include "app/window/captured_tasks.h"
#include "platform/build_config.h"
#include "platform/open_external.h"
#include "platform/paths.h"
#include "platform/single_instance.h"

#include <QApplication>
#include <QMessageBox>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using platform::CopyDataId;
using ui::CTollivarDlg;

namespace {

/// Asks for a start without a window, as a desktop's list of programs to begin with can do.
constexpr auto kHiddenVariable = "TOLLIVAR_START_HIDDEN";

} // namespace

Program::Program(Engine &engine, const settings::SettingsStore &settings, const DataPaths &paths)
    : m_engine(engine)
    , m_settings(settings)
    , m_paths(paths)
    , m_options(m_settings)
    , m_languages(m_settings, platform::programDirectory() + u"/Language"_s)
{
    m_options.LoadAll();
    m_languages.load();
    m_window = std::make_unique<CTollivarDlg>(windowServices());
    m_engine.onEvent([this](std::uint32_t task, tasks::TaskEventCode code) {
        m_window->onTaskEvent(task, code);
    });
    connectWindow();
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
        .wantsFlashNote = {},
    };
}

void Program::connectWindow()
{
    CTollivarDlg *window = m_window.get();
    // quit() would ask the window to close, which hides it and ends nothing.
    QObject::connect(window, &CTollivarDlg::exitWanted, window, [] { QApplication::exit(); });
    QObject::connect(window, &CTollivarDlg::homePageWanted, window,
                     [] { platform::openAddress(QString(platform::build::kHomePage)); });
    QObject::connect(window, &CTollivarDlg::browserWanted, window,
                     [] { platform::startCompanion(u".\\SniffBrowser.exe"_s); });
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
    if (const auto address = addressOf(arguments)) {
        m_window->addAddress(*address);
    }
}

void Program::shutDown()
{
    m_window->leaveScreen();
    m_engine.manager().shutDown();
    m_engine.onEvent({});
    m_messages.reset();
    m_window.reset();
}

} // namespace tollivar::app
