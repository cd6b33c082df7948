#include "app/window/tollivar_app.h"

#include "app/engine.h"
#include "app/language/button_texts.h"
#include "app/language/languages.h"
#include "app/manager_options.h"
#include "app/second_start.h"
#include "app/window/program.h"
#include "app/window/trouble_notes.h"
#include "platform/build_config.h"
#include "platform/paths.h"
#include "ui/dialog/message_box.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using DuiLib::CPaintManagerUI;
using platform::ErrorKind;

namespace {

const QString kProgramName = platform::build::kProductName;

void warn(const QString &text)
{
    ui::MessageBox::warning(nullptr, kProgramName, text);
}

/// The archive wins when both are there; with neither, the program's own look stays.
void chooseSkin()
{
    CPaintManagerUI::SetInstance();
    const QString skins = platform::programDirectory() + u"/skins"_s;
    if (QFileInfo::exists(skins + u"/default.zip"_s)) {
        CPaintManagerUI::SetResourceZip(skins + u"/default.zip"_s);
    } else {
        CPaintManagerUI::SetResourcePath(skins + u"/default"_s);
    }
}

/// The stored tasks, once nobody else works with them; null when the person gives up.
std::unique_ptr<Engine> openEngine(const DataPaths &paths, const language::Languages &languages,
                                   const EngineOptions &options)
{
    for (;;) {
        auto engine = Engine::create(options);
        if (engine) {
            return std::move(*engine);
        }
        if (engine.error().kind != ErrorKind::TryAgain) {
            warn(engine.error().text);
            return nullptr;
        }
        const auto answer = ui::MessageBox::question(
            nullptr, kProgramName, languages.text(u"strMsgTasksInUse"_s).arg(paths.directory),
            ui::MessageBox::Retry | ui::MessageBox::Cancel);
        if (answer != ui::MessageBox::Retry) {
            return nullptr;
        }
    }
}

} // namespace

struct CTollivarApp::Private {
    QStringList arguments;
    std::unique_ptr<platform::FileLock> claim;
};

CTollivarApp::CTollivarApp(QStringList arguments) : d(std::make_unique<Private>())
{
    d->arguments = std::move(arguments);
}

CTollivarApp::~CTollivarApp() = default;

bool CTollivarApp::InitInstance()
{
    // Everything that is named relatively lies beside the executable.
    QDir::setCurrent(platform::programDirectory());
    const auto located = locateData();
    if (!located) {
        chooseSkin();
        warn(located.error().text);
        return false;
    }
    auto check = checkSingleInstance(platform::instancePlace(located->directory), d->arguments);
    if (check.outcome == StartOutcome::End) {
        return false;
    }
    d->claim = std::move(check.claim);
    chooseSkin();
    const auto paths = setUpData();
    if (!paths) {
        warn(paths.error().text);
        return false;
    }
    runMainWindow(*paths);
    return false;
}

void CTollivarApp::runMainWindow(const DataPaths &paths)
{
    const settings::SettingsStore settings(paths.settings);
    language::Languages languages(settings, platform::programDirectory() + u"/Language"_s);
    languages.load();
    const language::ButtonTexts buttons(
        [&languages](const QString &id) { return languages.text(id); });
    TroubleNotes notes;
    const auto engine =
        openEngine(paths, languages,
                   {.databasePath = paths.tasks,
                    .legacyListPath = paths.legacyTasks,
                    .manager = managerOptions(settings),
                    .notifier = [&notes](const QString &text) { notes.tell(text); }});
    if (!engine) {
        return;
    }
    Program program(*engine, settings, languages, paths);
    program.start(d->arguments);
    QApplication::exec();
    program.shutDown();
}

void CTollivarApp::ExitInstance()
{
    d->claim.reset();
}

} // namespace tollivar::app
