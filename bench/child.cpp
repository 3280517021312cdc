// child.cpp - runs a program to its end.

#include "child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

static bool spawn(pid_t *pid, std::vector<char *> const &argv, std::string const &output) {
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return false;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    bool spawned = posix_spawn(pid, argv[0], &actions, nullptr, argv.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return spawned;
}

ChildOutcome runChild(std::vector<std::string> const &args, std::string const &output) {
    std::vector<char *> argv;
    for (std::string const &arg : args) argv.push_back(const_cast<char *>(arg.c_str()));
    argv.push_back(nullptr);
    ChildOutcome outcome{};
    pid_t pid;
    if (!spawn(&pid, argv, output)) return outcome;
    int status = 0;
    outcome.ok =
        wait4(pid, &status, 0, &outcome.usage) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return outcome;
}
