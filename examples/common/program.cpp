#include "program.h"

#include <zyn/version.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

namespace {

constexpr const char* helpOfAll = R"(
  -h, --help            print this text
  --version             print the version of ZynBase

exit code: 0 success, 1 a failure, described in one line on standard error, 2 wrong usage
)";

bool contains(Arguments arguments, std::string_view option) {
    return std::ranges::count(arguments, option) > 0;
}

}  // namespace

int runProgram(const char* name, const char* help, int argc, char** argv,
               const std::function<void(Arguments)>& work) {
    try {
        const Arguments arguments(argv + std::min(argc, 1), argv + argc);
        if (contains(arguments, "-h") || contains(arguments, "--help")) {
            std::printf("%s%s", help, helpOfAll);
        } else if (contains(arguments, "--version")) {
            std::printf("%s %s\n", name, ZYN_VERSION_STRING);
        } else {
            work(arguments);
        }
        if (std::fflush(stdout) != 0) { throw Failure("standard output", "cannot be written"); }
        return 0;
    } catch (const WrongUsage& wrong) {
        std::fprintf(stderr, "%s: %s; see %s --help\n", name, wrong.what(), name);
        return 2;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: not enough memory\n", name);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", name, failure.what());
    }
    return 1;
}

void warn(const char* name, const std::string& message) {
    std::fprintf(stderr, "%s: warning: %s\n", name, message.c_str());
}

InputAndOut::InputAndOut(Arguments arguments) {
    for (const std::string argument : arguments) {
        if (argument.starts_with('-')) { throw WrongUsage("unknown option '" + argument + "'"); }
    }
    if (arguments.empty()) { throw WrongUsage("INPUT is missing"); }
    if (arguments.size() > 2) {
        throw WrongUsage("expected INPUT and OUT only, not '" + std::string(arguments[2]) +
                         "' too");
    }
    input = arguments[0];
    if (arguments.size() == 2) { out = arguments[1]; }
}
