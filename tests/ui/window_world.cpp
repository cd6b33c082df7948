#include "tests/ui/window_world.h"

#include "tests/support/wait_until.h"
#include "ui/skin/paint_manager.h"

namespace tollivar::test {

using namespace Qt::StringLiterals;

void useDefaultSkin()
{
    static const bool chosen = [] {
        DuiLib::CPaintManagerUI::SetInstance();
        DuiLib::CPaintManagerUI::SetResourcePath(QStringLiteral(TOLLIVAR_SOURCE_SKIN));
        return true;
    }();
    Q_UNUSED(chosen)
}

WindowWorld::WindowWorld()
    : m_settings(m_sandbox.file(u"settings.ini"_s))
    , m_options(m_settings)
    , m_languages(m_settings, QStringLiteral(TOLLIVAR_LANGUAGES))
{
    useDefaultSkin();
    m_settings.SetLastFolder(m_sandbox.path());
    auto database = tasks::TaskDatabase::open(
        m_sandbox.file(u"dtasks.db"_s), m_sandbox.file(u"dtasks.ini"_s),
        [](const QString &message) { qFatal("%s", qPrintable(message)); });
    m_database = std::move(*database);
    m_inbox = std::make_unique<platform::AppMessageInbox>([this](const auto &message) {
        const auto outcome = m_manager->onTaskEvent(message.first, message.second);
        if (outcome == tasks::EventOutcome::FollowUp) {
            m_recorder->record(message.first, message.second);
        }
        if (m_window) {
            m_window->onTaskEvent(tasks::taskIdOf(message.first),
                                  tasks::eventCodeOf(message.first));
        }
        m_events += tasks::endsRun(tasks::eventCodeOf(message.first)) ? 1 : 0;
    });
    m_manager = std::make_unique<tasks::TaskManager>(
        *m_database, [] { return std::make_shared<ScriptedWorker>(); }, m_inbox->port(),
        tasks::TaskManagerOptions{.maximumDownloads = 5, .retry = {.maximumRetries = 0}});
    m_recorder = std::make_unique<tasks::TaskRecorder>(*m_manager, *m_database, m_clock);
    m_manager->setFilter(tasks::TaskFilter::All);
}

WindowWorld::~WindowWorld()
{
    m_manager->shutDown();
}

ui::WindowTexts WindowWorld::texts()
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

ui::CTollivarDlg &WindowWorld::open()
{
    m_options.LoadAll();
    m_languages.load();
    m_window = std::make_unique<ui::CTollivarDlg>(ui::WindowServices{
        .manager = *m_manager,
        .settings = m_settings,
        .options = m_options,
        .texts = texts(),
        .taskForAddress = [this](const QString &address) -> platform::Result<tasks::TaskInfo> {
            tasks::TaskInfo task;
            task.strOriURL = address;
            task.strOutputFolder = m_sandbox.path() + u'/';
            task.strOutputName = address.right(8);
            return task;
        },
        .readCapturedText = [this](const QString & /*text*/) { return captured; },
        .conversionOf = {},
        .stopConversion = [this](std::uint32_t task) { stoppedConversions.push_back(task); },
        .wantsFlashNote = [this] { return wantsFlashNote; },
    });
    m_window->show();
    return *m_window;
}

std::uint32_t WindowWorld::add(tasks::TaskInfo task)
{
    task.strOutputFolder = m_sandbox.path() + u'/';
    if (task.strOriURL.isEmpty()) {
        task.strOriURL = u"http://site.example/watch/"_s + task.strOutputName;
    }
    return m_manager->addTask(task, tasks::TaskOrigin::New);
}

std::uint32_t WindowWorld::add(const QString &name)
{
    tasks::TaskInfo task;
    task.strOutputName = name;
    return add(task);
}

std::uint32_t WindowWorld::addCompleted(const QString &name)
{
    tasks::TaskInfo task;
    task.strOutputName = name;
    task.nCompletedStatus = 1;
    task.bFileCreated = 1;
    return add(task);
}

ScriptedWorker &WindowWorld::worker(std::uint32_t id) const
{
    return dynamic_cast<ScriptedWorker &>(*m_manager->worker(id));
}

void WindowWorld::end(std::uint32_t id, tasks::TaskEventCode code)
{
    const int before = m_events;
    worker(id).endWith(code);
    waitUntil("the end of a run", [&] { return m_events > before; });
}

} // namespace tollivar::test
