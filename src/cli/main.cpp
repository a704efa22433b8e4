#include "LocateCommand.h"

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char *argv[])
{
    std::vector<std::string_view> arguments(argv + 1, argv + argc);
    std::string error;
    const auto options = LocateCommand::parseArguments(arguments, &error);
    if (!options) {
        std::fprintf(stderr, "veltor-locate: %s\n\n%s", error.c_str(), LocateCommand::usage());
        return LocateCommand::UsageError;
    }
    const LocateCommand command(*options);
    const int status = command.run(stdin, stdout, stderr);
    if (std::fflush(stdout) != 0) {
        std::fputs("veltor-locate: cannot write the output\n", stderr);
        return LocateCommand::QueryError;
    }
    return status;
}
