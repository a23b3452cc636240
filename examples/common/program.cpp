#include "program.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

namespace {

constexpr const char* exitCodes = R"(
exit code: 0 done, 1 a failure, told in one line on standard error, 2 wrong usage
)";

}  // namespace

int runProgram(const char* name, const char* help, int argc, char** argv,
               const std::function<void(Arguments)>& work) {
    try {
        const Arguments arguments(argv + std::min(argc, 1), argv + argc);
        if (std::ranges::count(arguments, std::string_view("--help")) > 0) {
            std::printf("%s%s", help, exitCodes);
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

InputAndOut::InputAndOut(Arguments arguments) {
    for (const std::string argument : arguments) {
        if (argument.starts_with('-')) { throw WrongUsage("unknown option '" + argument + "'"); }
    }
    if (arguments.empty()) { throw WrongUsage("INPUT is missing"); }
    if (arguments.size() > 2) {
        throw WrongUsage("INPUT and OUT only, not '" + std::string(arguments[2]) + "' too");
    }
    input = arguments[0];
    if (arguments.size() == 2) { out = arguments[1]; }
}
