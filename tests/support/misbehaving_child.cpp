// A console helper that does what the first argument says: the child of tests about children.
//
//   silent                 ends at once and says nothing
//   hang                   says "ready" and waits for ever
//   deaf                   as hang, and no polite signal ends it
//   chatter                one word after the other, never a line, for ever
//   endless                writes as fast as it can, for ever
//   exit CODE              ends with that status
//   die SIGNAL             ends by that signal
//   crash                  ends by an abort
//   write HEX...           writes these bytes, flushing after each argument, and ends
//   bytes COUNT            writes that many "x" and ends
//   args TEXT...           writes each further argument with its byte count: "3:abc", one a line
//   both                   writes "out" to standard output and "err" to standard error
//   input                  reads standard input to its end and writes how many bytes there were
//   descriptors            writes the open descriptors, one a line
//   terminal               writes "yes" when there is a terminal to ask, else "no"
//   ids                    writes process, group and session
//   variable NAME          writes the value of an environment variable
//   grandchild             starts a process that waits for ever, writes its id, waits for ever
//   orphan                 as grandchild, but ends at once itself
//
// Written without the program's own libraries, so that what it shows is the starter's doing.

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using Arguments = std::vector<std::string>;

void say(const std::string &text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

[[noreturn]] void waitForEver()
{
    for (;;) {
        pause();
    }
}

[[noreturn]] void hang()
{
    say("ready\n");
    waitForEver();
}

[[noreturn]] void beDeaf()
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGPIPE, SIGUSR1, SIGUSR2}) {
        std::signal(number, SIG_IGN);
    }
    hang();
}

[[noreturn]] void repeat(const std::string &text, useconds_t pauseMicroseconds)
{
    for (;;) {
        say(text);
        if (pauseMicroseconds > 0) {
            usleep(pauseMicroseconds);
        }
    }
}

void dieBy(int number)
{
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    std::signal(number, SIG_DFL);
    std::raise(number);
}

void writeHex(const std::string &hex)
{
    constexpr int base = 16;
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(std::strtol(hex.substr(i, 2).c_str(), nullptr, base));
    }
    say(bytes);
}

void countInput()
{
    std::size_t total = 0;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 1; count > 0;) {
        count = read(STDIN_FILENO, buffer.data(), buffer.size());
        total += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    say(std::to_string(total) + "\n");
}

void listDescriptors()
{
    DIR *folder = opendir("/proc/self/fd");
    if (folder == nullptr) {
        return;
    }
    while (const dirent *entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && name != std::to_string(dirfd(folder))) {
            say(name + "\n");
        }
    }
    closedir(folder);
}

void startGrandchild()
{
    const pid_t grandchild = fork();
    if (grandchild == 0) {
        waitForEver();
    }
    say(std::to_string(grandchild) + "\n");
}

int run(const std::string &what, const Arguments &rest)
{
    const std::string first = rest.empty() ? std::string() : rest.front();
    const auto number = [&first] { return std::atoi(first.c_str()); };
    const std::map<std::string, void (*)(const std::string &)> quick = {
        {"silent", [](const std::string &) {}},
        {"hang", [](const std::string &) { hang(); }},
        {"deaf", [](const std::string &) { beDeaf(); }},
        {"chatter", [](const std::string &) { repeat("chatter ", 1'000); }},
        {"endless", [](const std::string &) { repeat(std::string(65'536, 'x'), 0); }},
        {"crash", [](const std::string &) { dieBy(SIGABRT); }},
        {"input", [](const std::string &) { countInput(); }},
        {"descriptors", [](const std::string &) { listDescriptors(); }},
        {"terminal",
         [](const std::string &) { say(open("/dev/tty", O_RDWR) >= 0 ? "yes" : "no"); }},
        {"ids",
         [](const std::string &) {
             say(std::to_string(getpid()) + " " + std::to_string(getpgrp()) + " " +
                 std::to_string(getsid(0)) + "\n");
         }},
        {"orphan", [](const std::string &) { startGrandchild(); }},
        {"grandchild",
         [](const std::string &) {
             startGrandchild();
             waitForEver();
         }},
        {"variable",
         [](const std::string &name) {
             const char *value = std::getenv(name.c_str());
             say(value != nullptr ? value : "(none)");
         }},
        {"both",
         [](const std::string &) {
             say("out\n");
             std::fputs("err\n", stderr);
         }},
    };
    if (const auto found = quick.find(what); found != quick.end()) {
        found->second(first);
        return 0;
    }
    if (what == "exit") {
        return number();
    }
    if (what == "die") {
        dieBy(number());
    } else if (what == "bytes") {
        say(std::string(static_cast<std::size_t>(number()), 'x'));
    } else if (what == "write") {
        for (const std::string &hex : rest) {
            writeHex(hex);
        }
    } else if (what == "args") {
        for (const std::string &text : rest) {
            say(std::to_string(text.size()) + ":" + text + "\n");
        }
    } else {
        std::fprintf(stderr, "misbehaving_child: no such misbehaviour: %s\n", what.c_str());
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const Arguments arguments(argv, argv + argc);
    if (arguments.size() < 2) {
        return 2;
    }
    return run(arguments[1], Arguments(arguments.begin() + 2, arguments.end()));
}
