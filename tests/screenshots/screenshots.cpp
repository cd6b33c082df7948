// Draws every window with made-up tasks and saves the pictures: screenshots FOLDER [LANGUAGE].

#include "tests/ui/window_world.h"
#include "ui/dialogs/about_dlg.h"
#include "ui/dialogs/add_task_dlg.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTest>
#include <QToolButton>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar;
using tasks::TaskState;

struct Sample {
    QStringView name;
    QStringView type;
    std::uint32_t size;
    std::uint32_t done;
    TaskState state;
    int mode = 0;
    int quality = 0;
};

constexpr std::uint32_t kMega = 1024 * 1024;

constexpr Sample kBusy[] = {
    {u"Evening concert in the old town hall", u".mp4", 240 * kMega, 89 * kMega,
     TaskState::Downloading, 1, 3},
    {u"How to sharpen a kitchen knife", u".flv", 48 * kMega, 35 * kMega, TaskState::Downloading},
    {u"Lecture 7 - Hash tables and why they work", u".mpeg", tasks::kUnknownSize, 12 * kMega,
     TaskState::Downloading},
    {u"Snow in the Dolomites", u".mp4", 0, 0, TaskState::TakingTitle},
    {u"Street market, early morning", u".flv", 0, 0, TaskState::ResolvingPage},
    {u"Paper planes that really fly", u".swf", 3 * kMega, 0, TaskState::Waiting, 2},
    {u"A short history of the bicycle", u".mp4", 96 * kMega, 96 * kMega, TaskState::Completed},
    {u"Interview with a lighthouse keeper", u".3gp", 20 * kMega, 20 * kMega, TaskState::Completed,
     6},
    {u"Restoring a 1950s radio", u".flv", 61 * kMega, 14 * kMega, TaskState::Stopped},
    {u"Trailer that is gone", u".mp4", 0, 0, TaskState::Failed},
};

void fill(test::WindowWorld &world, bool allFailed)
{
    int place = 0;
    for (const Sample &sample : kBusy) {
        tasks::TaskInfo task;
        task.strOutputName = sample.name.toString();
        task.strFileType = sample.type.toString();
        task.dwSize = sample.size;
        task.dwDownloadSize = sample.done;
        task.nModeLow = sample.mode;
        task.nModeHigh = sample.quality;
        task.nCompletedStatus = sample.state == TaskState::Completed && !allFailed ? 1 : 0;
        task.bFileCreated = task.nCompletedStatus;
        auto &worker = world.worker(world.add(task));
        ++place;
        if (allFailed) {
            worker.setState(place % 3 == 0 ? TaskState::ResolvingPage : TaskState::Downloading);
            worker.setFailure(
                {place % 2 == 0 ? tasks::ErrorKind::HttpStatus : tasks::ErrorKind::Network,
                 place % 4 == 0 ? 404U : 403U});
            worker.setState(TaskState::Failed);
            continue;
        }
        if (sample.state == TaskState::Failed) {
            worker.setState(TaskState::Downloading);
            worker.setFailure({tasks::ErrorKind::HttpStatus, 404});
        }
        worker.setState(sample.state);
        if (sample.state == TaskState::Downloading) {
            const float percent =
                sample.size == tasks::kUnknownSize
                    ? 0.0F
                    : 10'000.0F * static_cast<float>(sample.done) / static_cast<float>(sample.size);
            worker.setProgress({percent, 900.0 * 1024 / place,
                                sample.size == tasks::kUnknownSize ? 65'535 : 97 * place,
                                sample.done});
        }
    }
}

void save(QWidget &window, const QString &folder, const QString &name)
{
    // Only a window that is on the screen is laid out.
    QTest::qWait(60);
    const QString scale = window.devicePixelRatioF() > 1.5 ? u"-2x"_s : QString();
    if (!window.grab().save(folder + u'/' + name + scale + u".png"_s)) {
        qFatal("cannot write %s", qPrintable(name));
    }
}

void saveMain(const QString &folder, const QString &language)
{
    for (const auto &[name, count] :
         {std::pair(u"main-empty"_s, 0), {u"main-busy"_s, 1}, {u"main-failed"_s, 2}}) {
        test::WindowWorld world;
        world.settings().SetLanguage(language);
        if (count > 0) {
            fill(world, count == 2);
        }
        // Completed tasks show at the next rebuild of the rows.
        world.manager().setFilter(tasks::TaskFilter::Downloading);
        world.manager().setFilter(tasks::TaskFilter::All);
        auto &window = world.open();
        if (count == 1) {
            window.findChild<ui::CListCtrlEx *>()->selectRows({1});
        }
        save(window, folder, name);
    }
}

void saveDialogs(const QString &folder, const QString &language)
{
    test::WindowWorld world;
    world.settings().SetLanguage(language);
    world.open();
    world.window().hide();
    const auto texts = world.texts();
    ui::CAddTaskDlg add(nullptr, world.settings(), texts,
                        {u"https://www.youtube.com/watch?v=concert42"_s, {}});
    add.show();
    save(add, folder, u"add-task"_s);
    add.findChild<QToolButton *>(u"btnMore"_s)->click();
    save(add, folder, u"add-task-more"_s);
    ui::CConfirmDeleteDlg remove(nullptr, texts.dialog);
    remove.show();
    save(remove, folder, u"remove-tasks"_s);
    settings::COptionsManager options(world.settings());
    options.LoadAll();
    ui::CSettingsDialog settings(nullptr, options, texts);
    settings.show();
    save(settings, folder, u"settings"_s);
    ui::CTaskNotifyDlg popup({u"/videos/"_s, u"Harbour at dawn"_s, u".mp4"_s}, texts.dialog);
    popup.setAttribute(Qt::WA_DeleteOnClose, false);
    popup.show();
    save(popup, folder, u"completed"_s);
    auto *player = new ui::CCantPlayDlg(nullptr, world.settings(), texts, {});
    player->show();
    save(*player, folder, u"player-check"_s);
    player->close();
    ui::AboutDialog about(nullptr, texts.dialog);
    about.show();
    save(about, folder, u"about"_s);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QString folder = QApplication::arguments().value(1, u"."_s);
    const QString language = QApplication::arguments().value(2);
    QDir().mkpath(folder);
    test::useDefaultSkin();
    saveMain(folder, language);
    saveDialogs(folder, language);
    for (const auto &problem : DuiLib::CPaintManagerUI::takeProblems()) {
        qFatal("%s", qPrintable(problem.toString()));
    }
    return 0;
}
