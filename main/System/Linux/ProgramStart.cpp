#include "System/Linux/ProgramStart.h"

#include "Base/Descriptor.h"

#include <system_error>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace brellin {

namespace {

/// The environment of a started program: no input or output, its own session, default signal handling.
class Surroundings {
public:
    explicit Surroundings(const Location &workingFolder)
    {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        // An unread pipe would block the program, and a log would fill the memory.
        ::posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (!workingFolder.empty())
            ::posix_spawn_file_actions_addchdir_np(&m_actions, workingFolder.c_str());
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Surroundings()
    {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_actions);
    }
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;

    const posix_spawn_file_actions_t *actions() const { return &m_actions; }
    const posix_spawnattr_t *attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

bool endsWithin(pid_t program, std::chrono::milliseconds patience)
{
    const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, program, 0U)));
    pollfd ended{handle.number(), POLLIN, 0};
    return handle.isOpen() && ::poll(&ended, 1, static_cast<int>(patience.count())) > 0;
}

/// Reaps the program on exit, so that it does not remain a zombie.
void takeNoteOfTheEnd(pid_t program)
{
    try {
        std::thread([program] { ::waitpid(program, nullptr, 0); }).detach();
    } catch (const std::system_error &) {
        // Without a thread it remains a zombie, which is harmless.
    }
}

} // namespace

Result<int> startProgram(const std::vector<std::string> &words, const Location &workingFolder,
                         std::chrono::milliseconds patience)
{
    std::vector<std::string> own = words;
    std::vector<char *> arguments;
    arguments.reserve(own.size() + 1);
    for (std::string &word : own)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const Surroundings surroundings(workingFolder);
    pid_t program = -1;
    if (const int error = ::posix_spawn(&program, words.front().c_str(), surroundings.actions(),
                                        surroundings.attributes(), arguments.data(), environ))
        return failure(Failure::system(error));
    if (!endsWithin(program, patience)) {
        takeNoteOfTheEnd(program);
        return 0;
    }
    int status = 0;
    ::waitpid(program, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace brellin
