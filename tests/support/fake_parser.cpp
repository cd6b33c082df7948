// Stands in for the page parser: prints what the test put into the environment, and notes how it
// was called, one call a line, its arguments parted by a unit separator.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <thread>

namespace {

std::string_view setting(const char *name)
{
    const char *const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

bool isSecondTry(int argc, char **argv)
{
    constexpr std::string_view kGlued = "-parsemodePARSE_MODE";
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]).starts_with(kGlued)) {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    if (const auto log = setting("FAKE_PARSER_LOG"); !log.empty()) {
        std::ofstream file(std::string(log), std::ios::app);
        for (int i = 1; i < argc; ++i) {
            file << argv[i] << (i + 1 < argc ? '\x1f' : '\n');
        }
    }
    const auto answer =
        setting(isSecondTry(argc, argv) ? "FAKE_PARSER_SECOND_ANSWER" : "FAKE_PARSER_ANSWER");
    std::fwrite(answer.data(), 1, answer.size(), stdout);
    std::fflush(stdout);
    if (!setting("FAKE_PARSER_HANGS").empty()) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
    return 0;
}
