#include "System/DecoderProgram.h"

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace brellin::decoderProgram {

int start(pid_t &pid, const Location &program, const char *word, int input, int output)
{
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    // Discard the libraries' messages about broken files.
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program.native();
    std::string argument = word;
    const std::array<char *, 3> arguments{name.data(), argument.data(), nullptr};
    const int error = ::posix_spawnp(&pid, program.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

void end(pid_t pid)
{
    ::kill(pid, SIGKILL);
    for (int waited = 0; waited < 1000 && ::waitpid(pid, nullptr, WNOHANG) == 0; waited += 5)
        ::poll(nullptr, 0, 5);
}

} // namespace brellin::decoderProgram
