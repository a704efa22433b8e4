#pragma once

// veltor-locate itself on pipes, for the suites that check what a user of the program sees:
// its exit status, its output and errors, and its own peak memory.

#include <csignal>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char **environ;

struct ProgramRun
{
    int status = -1;
    std::string out;
    std::string errors;
    long peakKilobytes = 0;
};

// The real program on a pipe, its output read while the input is written; wait4 gives its own
// peak memory, apart from any other child of this process.
inline ProgramRun runLocate(const std::vector<std::string> &arguments, const std::string &input)
{
    std::signal(SIGPIPE, SIG_IGN);
    int in[2], out[2], err[2];
    if (pipe(in) != 0 || pipe(out) != 0 || pipe(err) != 0)
        return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    for (const int fd : {in[0], in[1], out[0], out[1], err[0], err[1]})
        posix_spawn_file_actions_addclose(&actions, fd);
    std::vector<char *> argv;
#ifdef VELTOR_LOCATE_RUNNER
    argv.push_back(const_cast<char *>(VELTOR_LOCATE_RUNNER)); // an arm64 build under emulation
#endif
    argv.push_back(const_cast<char *>(VELTOR_LOCATE_PATH));
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int spawned =
        posix_spawn(&pid, argv.front(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    for (const int fd : {in[0], out[1], err[1]})
        close(fd);
    ProgramRun run;
    std::thread writer([&] {
        for (std::size_t at = 0; spawned == 0 && at < input.size();) {
            const ssize_t written = write(in[1], input.data() + at, input.size() - at);
            if (written <= 0)
                break;
            at += std::size_t(written);
        }
        close(in[1]);
    });
    const auto drain = [](int fd, std::string &sink) {
        char block[65536];
        for (ssize_t count; (count = read(fd, block, sizeof block)) > 0;)
            sink.append(block, std::size_t(count));
        close(fd);
    };
    // The errors are a few lines, well within a pipe's buffer, so they can wait for the output.
    drain(out[0], run.out);
    drain(err[0], run.errors);
    writer.join();
    int status = 0;
    rusage usage{};
    if (spawned == 0 && wait4(pid, &status, 0, &usage) == pid && WIFEXITED(status)) {
        run.status = WEXITSTATUS(status);
        run.peakKilobytes = usage.ru_maxrss;
    }
    return run;
}

