// Draws every window with made-up tasks and saves the pictures: screenshots FOLDER [LANGUAGE].

#include "app/language/button_texts.h"
#include "companions/clip_player/look.h"
#include "companions/clip_player/media_player.h"
#include "companions/clip_player/player_window.h"
#include "companions/sniff_browser/media_panel.h"
#include "platform/build_config.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialog/message_box.h"
#include "ui/dialogs/about_dlg.h"
#include "ui/dialogs/add_task_dlg.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/dialogs/checking_dlg.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/drop_zone/drop_hint.h"
#include "ui/main_window/main_menus.h"
#include "ui/notify/task_notify_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QPixmap>
#include <QStyle>
#include <QToolButton>
#include <QWindow>

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
        const bool isRunning = sample.state != TaskState::Completed &&
                               sample.state != TaskState::Stopped &&
                               sample.state != TaskState::Failed;
        if (isRunning && !allFailed) {
            static_cast<void>(world.manager().start(worker.taskId()));
        }
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
    // Only a window that is on the screen is laid out, and then by events.
    test::waitUntil("a window on the screen", [&window] {
        return window.windowHandle() != nullptr && window.windowHandle()->isExposed();
    });
    QCoreApplication::sendPostedEvents();
    if (window.property("clipped").toBool()) {
        // As on a display that blends.
        window.setProperty("clipped", false);
        window.setAttribute(Qt::WA_TranslucentBackground);
        window.style()->unpolish(&window);
        window.style()->polish(&window);
    }
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

/// The rows sorted by name, one of them chosen and with the keyboard.
void saveSorted(const QString &folder, const QString &language)
{
    test::WindowWorld world;
    world.settings().SetLanguage(language);
    fill(world, false);
    auto &window = world.open();
    auto &list = *window.findChild<ui::CListCtrlEx *>();
    QApplication::setActiveWindow(&window);
    list.setFocus();
    const QHeaderView &header = *list.horizontalHeader();
    const int left = header.sectionViewportPosition(static_cast<int>(ui::ListColumn::Name));
    test::clickAt(*header.viewport(), {left + header.height(), header.height() / 2});
    list.selectRows({2});
    save(window, folder, u"main-sorted"_s);
}

void saveMenus(const QString &folder, const ui::WindowTexts &texts)
{
    ui::MainMenus menus(texts, [](int /*command*/) {});
    menus.addProfiles([] { return QStringList{u"PSP - PSP MPEG-4 Video (*.mp4)"_s}; },
                      [](const QString & /*profile*/) {});
    menus.addCopyDetails([] {}, [] { return true; });
    for (const auto &[name, menu] :
         {std::pair(u"menu-help"_s, &menus.help()), {u"menu-list"_s, &menus.list()}}) {
        menu->popup({});
        save(*menu, folder, name);
        menu->close();
    }
}

void saveMessages(const QString &folder, const ui::WindowTexts &texts)
{
    using ui::MessageBox;
    const QString title = platform::build::kProductName;
    MessageBox question(MessageBox::Question, title, texts.text(u"strMsgCompletedTasks"_s),
                        MessageBox::Yes | MessageBox::No | MessageBox::Cancel, nullptr);
    MessageBox note(MessageBox::Information, title, texts.text(u"strNoTray"_s), MessageBox::Ok,
                    nullptr);
    MessageBox warning(MessageBox::Warning, title, texts.text(u"strMsgInvalidFolder"_s),
                       MessageBox::Ok, nullptr);
    for (const auto &[name, box] : {std::pair(u"message-question"_s, &question),
                                    {u"message-note"_s, &note},
                                    {u"message-warning"_s, &warning}}) {
        box->show();
        save(*box, folder, name);
    }
}

void saveDropZone(const QString &folder, const ui::WindowTexts &texts)
{
    const platform::AppMessageInbox nobody([](const platform::AppMessage & /*message*/) {});
    ui::CDragDlg zone(nobody.port(), texts.text);
    constexpr double kShare = 0.62;
    zone.setProgress(kShare);
    zone.show();
    save(zone, folder, u"drop-zone"_s);
    auto &hint = *zone.findChild<ui::DropHint *>();
    hint.showBeside(zone.frameGeometry(), texts.text(u"strDropHint"_s));
    save(hint, folder, u"drop-hint"_s);
}

void saveDialogs(const QString &folder, const QString &language)
{
    test::WindowWorld world;
    world.settings().SetLanguage(language);
    world.open();
    world.window().hide();
    const auto texts = world.texts();
    world.settings().SetLastFolder(u"/home/me/Videos"_s);
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
    ui::CSettingsDialog settings(nullptr, options, texts, ui::ClipboardWatch::InBackground);
    settings.show();
    save(settings, folder, u"settings"_s);
    ui::CTaskNotifyDlg popup({u"/home/me/Videos/"_s, u"Harbour at dawn"_s, u".mp4"_s},
                             texts.dialog);
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
    ui::CheckingDialog checking(nullptr, texts.dialog);
    checking.show();
    save(checking, folder, u"checking"_s);
    saveMenus(folder, texts);
    const language::ButtonTexts buttons(texts.text);
    saveMessages(folder, texts);
    saveDropZone(folder, texts);
}

void saveCapturePanel(const QString &folder)
{
    sniff::MediaPanel panel;
    panel.show();
    save(panel, folder, u"capture-panel-empty"_s);
    const auto clip = [](const QString &title, const QString &name, std::int64_t megabytes) {
        return capture::MediaFound{.address = u"https://media.example/"_s + name,
                                   .title = title,
                                   .mediaType = u"video/mp4"_s,
                                   .extension = u".mp4"_s,
                                   .length = megabytes * kMega,
                                   .page = u"https://videos.example/watch"_s};
    };
    panel.setMedia({clip(u"Harbour at dawn"_s, u"harbour.mp4"_s, 184),
                    clip(u"Harbour at dawn"_s, u"harbour-small.mp4"_s, 41),
                    clip(u"Snow in the Dolomites"_s, u"snow.mp4"_s, 96),
                    clip(u"Evening concert in the old town hall"_s, u"concert.mp4"_s, 240)});
    save(panel, folder, u"capture-panel"_s);
}

/// A sun over the sea, for ffmpeg to draw: one picture, shown for as long as is wanted.
const QString kHarbour =
    u"color=black:size=960x540:rate=1,format=gbrp,"
    "geq=r='st(0,gt(Y,350));st(1,min(Y/350,1));"
    "st(2,exp(-(pow(X-620,2)+pow(Y-330,2))/30000));st(3,lt(hypot(X-620,Y-330),52)*lt(Y,350));"
    "st(4,ld(0)*exp(-pow((X-620)/(46+(Y-350)*0.55),2))*(0.6+0.4*sin(Y*0.4+1.5*sin(X*0.05))));"
    "clip((1-ld(0)*0.78)*(28+205*pow(ld(1),2.2))+70*ld(2)+90*ld(3)+120*ld(4),0,255)':"
    "g='st(0,gt(Y,350));st(1,min(Y/350,1));"
    "st(2,exp(-(pow(X-620,2)+pow(Y-330,2))/30000));st(3,lt(hypot(X-620,Y-330),52)*lt(Y,350));"
    "st(4,ld(0)*exp(-pow((X-620)/(46+(Y-350)*0.55),2))*(0.6+0.4*sin(Y*0.4+1.5*sin(X*0.05))));"
    "clip((1-ld(0)*0.7)*(42+112*pow(ld(1),1.6))+48*ld(2)+90*ld(3)+85*ld(4),0,255)':"
    "b='st(0,gt(Y,350));st(1,min(Y/350,1));"
    "st(2,exp(-(pow(X-620,2)+pow(Y-330,2))/30000));st(3,lt(hypot(X-620,Y-330),52)*lt(Y,350));"
    "st(4,ld(0)*exp(-pow((X-620)/(46+(Y-350)*0.55),2))*(0.6+0.4*sin(Y*0.4+1.5*sin(X*0.05))));"
    "clip((1-ld(0)*0.4)*(88+42*ld(1))+10*ld(2)+40*ld(3)+45*ld(4),0,255)',"
    "trim=end_frame=1,loop=loop=-1:size=1,setpts=N/TB"_s;

void savePlayer(QApplication &application, const QString &folder)
{
    constexpr double kMoment = 23;
    const test::Sandbox sandbox;
    const QString clip = sandbox.file(u"Harbour at dawn.mp4"_s);
    test::runToEnd({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
                    kHarbour, u"-t"_s, u"75"_s, u"-g"_s, u"1"_s, u"-crf"_s, u"12"_s, clip});
    player::look::wear(application);
    auto core = player::createCore();
    if (!core) {
        qFatal("%s", qPrintable(core.error().text));
    }
    player::MediaPlayer mediaPlayer(std::move(*core));
    player::PlayerWindow window(mediaPlayer);
    const player::PlayerState &state = mediaPlayer.state();
    window.show();
    save(window, folder, u"player-empty"_s);
    window.open(clip);
    test::waitUntil("the clip plays", [&] { return state.position.has_value(); });
    mediaPlayer.seekTo(kMoment);
    test::waitUntil("the moment", [&] { return state.position.value_or(0) >= kMoment; });
    save(window, folder, u"player"_s);
    window.open(sandbox.write(u"Half a download.flv"_s, "words"));
    test::waitUntil("the sentence", [&] { return state.status == player::PlayerStatus::Failed; });
    save(window, folder, u"player-failed"_s);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    // The same picture every time.
    QApplication::setCursorFlashTime(0);
    const QString folder = QDir(QApplication::arguments().value(1, u"."_s)).absolutePath();
    const QString language = QApplication::arguments().value(2);
    QDir().mkpath(folder);
    // Dialogs store their layouts where the program runs.
    const test::Sandbox work;
    QDir::setCurrent(work.path());
    test::useDefaultSkin();
    saveMain(folder, language);
    saveSorted(folder, language);
    saveDialogs(folder, language);
    if (language.isEmpty()) {
        saveCapturePanel(folder);
        savePlayer(application, folder);
    }
    for (const auto &problem : DuiLib::CPaintManagerUI::takeProblems()) {
        qFatal("%s", qPrintable(problem.toString()));
    }
    return 0;
}
