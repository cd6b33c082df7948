// A second process on a task database, for the tests that end one at any moment, keep one out, or
// fill its disk. usage: task_database_child hold|write|import|full|unprivileged DIRECTORY [SEED]

#include "tasks/task_database.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sched.h>
#include <string>

#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar::tasks;

struct OpenedStore {
    std::unique_ptr<TaskDatabase> database;
    std::shared_ptr<int> messages = std::make_shared<int>(0);
};

OpenedStore open(const QString &directory)
{
    OpenedStore store;
    auto opened = TaskDatabase::open(directory + u"/dtasks.db"_s, directory + u"/dtasks.ini"_s,
                                     [count = store.messages](const QString &message) {
                                         ++*count;
                                         std::fprintf(stderr, "told: %s\n", qPrintable(message));
                                     });
    if (opened) {
        store.database = *std::move(opened);
    } else {
        std::printf("error kind=%d %s\n", static_cast<int>(opened.error().kind),
                    qPrintable(opened.error().text));
    }
    return store;
}

void say(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

int hold(const QString &directory)
{
    const OpenedStore store = open(directory);
    if (!store.database) {
        return 1;
    }
    say("open");
    while (std::getchar() != EOF) {
    }
    return 0;
}

/// Announces each operation ("?"), does it, and acknowledges it ("!"), until it is killed. An
/// operation is "row size": the task of that row has that size; a size of 0 removes it.
int write(const QString &directory, unsigned seed)
{
    const OpenedStore store = open(directory);
    if (!store.database) {
        return 1;
    }
    std::mt19937 random(seed);
    std::vector<RowId> rows;
    store.database->LoadTasks([&rows](RowId row, TaskInfo &&) { rows.push_back(row); });
    for (std::int32_t size = 1; *store.messages == 0; ++size) {
        const bool removes = rows.size() > 40;
        if (rows.empty() || (!removes && random() % 4 == 0)) {
            TaskInfo task;
            task.dwSize = static_cast<std::uint32_t>(size);
            task.strCookies = QString(static_cast<qsizetype>(random() % 6000), u'c');
            say("? new " + std::to_string(size));
            rows.push_back(store.database->InsertTask(task));
            say("! " + std::to_string(rows.back()) + " " + std::to_string(size));
            continue;
        }
        const std::size_t chosen = random() % rows.size();
        const std::string row = std::to_string(rows.at(chosen));
        const std::string change = row + " " + std::to_string(removes ? 0 : size);
        say("? " + change);
        if (removes) {
            store.database->DeleteTask(rows.at(chosen));
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(chosen));
        } else {
            store.database->UpdateInt(rows.at(chosen), NumberColumn::Size, size,
                                      random() % 2 == 0 ? Durability::Durable
                                                        : Durability::Progress);
        }
        say("! " + change);
    }
    return 2;
}

int import(const QString &directory)
{
    say("begin");
    const OpenedStore store = open(directory);
    say("end");
    return store.database ? 0 : 1;
}

/// Gives the directory a small disk of its own when the system lets us, else a limit on the size
/// of a file.
void makeSmall(const QString &directory)
{
    constexpr rlim_t limit = 600 * 1024;
    if (::unshare(CLONE_NEWNS) == 0 &&
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        ::mount("none", directory.toUtf8().constData(), "tmpfs", 0, "size=600k") == 0) {
        say("small disk");
        return;
    }
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit size{limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &size);
    say("small files");
}

std::size_t countTasks(TaskDatabase &database)
{
    std::size_t count = 0;
    database.LoadTasks([&count](RowId, TaskInfo &&) { ++count; });
    return count;
}

/// Inserts until the disk is full and tells what was acknowledged and what is there afterwards.
int fill(const QString &directory)
{
    makeSmall(directory);
    OpenedStore store = open(directory);
    if (!store.database) {
        return 1;
    }
    TaskInfo task;
    task.strCookies = QString(2000, u'c');
    std::size_t acknowledged = 0;
    while (acknowledged < 100'000 && store.database->InsertTask(task) != 0) {
        ++acknowledged;
    }
    const bool wasTold = *store.messages > 0;
    const int toldBefore = *store.messages;
    store.database->inTransaction([&store, &task] {
        for (int round = 0; round < 500; ++round) {
            static_cast<void>(store.database->InsertTask(task));
        }
    });
    const int toldInTransaction = *store.messages - toldBefore;
    const std::size_t stored = countTasks(*store.database);
    store.database.reset();
    store = open(directory);
    if (!store.database) {
        return 1;
    }
    const std::size_t reopened = countTasks(*store.database);
    store.database->DeleteTask(1);
    const std::size_t removed = countTasks(*store.database);
    say("acknowledged " + std::to_string(acknowledged) + " told " + std::to_string(wasTold) +
        " transaction " + std::to_string(toldInTransaction) + " stored " + std::to_string(stored) +
        " reopened " + std::to_string(reopened) + " removed " + std::to_string(removed));
    return 0;
}

int openUnprivileged(const QString &directory)
{
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::setuid(nobody) != 0) {
        return 77;
    }
    return open(directory).database ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        return 64;
    }
    const std::string mode = argv[1];
    const QString directory = QString::fromLocal8Bit(argv[2]);
    if (mode == "hold") {
        return hold(directory);
    }
    if (mode == "write" && argc > 3) {
        return write(directory, static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)));
    }
    if (mode == "import") {
        return import(directory);
    }
    if (mode == "full") {
        return fill(directory);
    }
    if (mode == "unprivileged") {
        return openUnprivileged(directory);
    }
    return 64;
}
