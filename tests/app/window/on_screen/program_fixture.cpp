#include "tests/app/window/on_screen/program_fixture.h"

#include "app/language/menu_tables.h"
#include "app/manager_options.h"
#include "app/task_request.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QDir>

namespace tollivar::app {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kPlaces = {"XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"};

template<typename Window>
Window &shown()
{
    Window *found = nullptr;
    for (QWidget *each : QApplication::topLevelWidgets()) {
        found = found == nullptr ? qobject_cast<Window *>(each) : found;
    }
    return *found;
}

} // namespace

void ProgramTest::SetUp()
{
    DuiLib::CPaintManagerUI::SetInstance();
    for (const char *place : kPlaces) {
        const QString folder = m_sandbox.file(QString::fromLatin1(place));
        ASSERT_TRUE(QDir().mkpath(folder));
        qputenv(place, QFile::encodeName(folder));
    }
    qputenv("TOLLIVAR_UPDATE_URL", m_site.address("/update").toLatin1());
    // Nobody is asked whether popups are welcome.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    // Programs beside the program are looked for here, too.
    m_current = QDir::currentPath();
    QDir::setCurrent(m_sandbox.path());
    const auto paths = setUpData();
    ASSERT_TRUE(paths);
    m_paths = *paths;
    m_settings.emplace(m_paths.settings);
    m_settings->setFlag(settings::keys::kNoRemindFlashVersion, true);
    m_settings->setNumber(settings::keys::kCheckUpdate, 3);
    m_settings->setNumber(settings::keys::kMaxRetry, 0);
    m_settings->SetLastFolder(m_sandbox.path());
}

void ProgramTest::TearDown()
{
    end();
    QDir::setCurrent(m_current);
    qunsetenv("TOLLIVAR_UPDATE_URL");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    for (const char *place : kPlaces) {
        qunsetenv(place);
    }
}

void ProgramTest::start()
{
    auto engine = Engine::create({.databasePath = m_paths.tasks,
                                  .legacyListPath = m_paths.legacyTasks,
                                  .manager = managerOptions(*m_settings),
                                  .notifier = [](const QString &text) { qWarning() << text; }});
    ASSERT_TRUE(engine);
    m_engine = std::move(*engine);
    m_languages.emplace(*m_settings, m_sandbox.file(u"Language"_s));
    m_languages->load();
    m_program = std::make_unique<Program>(*m_engine, *m_settings, *m_languages, m_paths);
    m_program->start({});
}

void ProgramTest::end()
{
    if (m_program != nullptr) {
        m_program->shutDown();
    }
    m_program.reset();
    m_engine.reset();
}

ui::CTollivarDlg &ProgramTest::window()
{
    return shown<ui::CTollivarDlg>();
}

ui::CDragDlg &ProgramTest::dropZone()
{
    return shown<ui::CDragDlg>();
}

void ProgramTest::changeSettings(const std::function<void(QWidget &dialog)> &edit)
{
    bool isClosed = false;
    test::whenModalOpens([&](QWidget &dialog) {
        edit(dialog);
        test::click(*test::control(dialog, u"btnOK"_s));
        isClosed = true;
    });
    window().runCommand(language::commands::kSettings);
    EXPECT_TRUE(isClosed);
}

std::uint32_t ProgramTest::add(const QByteArray &path, const QString &name)
{
    auto task = newTask({.address = m_site.address(path),
                         .folder = m_sandbox.file(u"out"_s),
                         .method = tasks::DownloadMethod::Direct});
    EXPECT_TRUE(task);
    task->strOutputName = name.isEmpty() ? task->strOutputName : name;
    window().intake().addNewTask(*task);
    return manager().allTasks().back();
}

QString ProgramTest::complete(const QByteArray &path, const QString &name)
{
    m_site.on(path, test::answer("12345"));
    const std::uint32_t id = add(path, name);
    test::waitUntil("the popup", [] { return ui::CTaskNotifyDlg::newest() != nullptr; });
    return manager().worker(id)->record().outputPath();
}

} // namespace tollivar::app
