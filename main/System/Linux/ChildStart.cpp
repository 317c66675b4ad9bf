#include "System/ChildStart.h"

#include "Base/Descriptor.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brellin {

namespace {

std::vector<char *> pointersTo(const std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string &text : texts)
        pointers.push_back(const_cast<char *>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Everything needed between fork and exec, prepared before: the child must neither allocate nor lock.
class Launch {
public:
    explicit Launch(const ChildStart &start, int report)
        : m_start(start)
        , m_arguments(pointersTo(start.words))
        , m_environment(pointersTo(start.environment))
        , m_report(report)
    {
        ::sigfillset(&m_all);
    }

    pid_t fork()
    {
        // Block signals, so that none of our handlers runs in the child.
        ::pthread_sigmask(SIG_SETMASK, &m_all, &m_before);
        const pid_t parent = ::getpid();
        const pid_t child = ::fork();
        if (child == 0)
            become(parent);
        const int error = errno;
        ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
        errno = error;
        return child;
    }

private:
    [[noreturn]] void become(pid_t parent) const
    {
        prepare(parent);
        ::execve(m_arguments.front(), m_arguments.data(), m_environment.data());
        giveUp();
    }

    void prepare(pid_t parent) const
    {
        if (::setpgid(0, 0) != 0)
            giveUp();
        if (m_start.orphaned == ChildStart::Orphaned::EndWithUs) {
            // The parent may have died before prctl().
            if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::getppid() != parent)
                giveUp();
        }
        if (!m_start.workingFolder.empty() && ::chdir(m_start.workingFolder.c_str()) != 0)
            giveUp();
        hand(m_start.input, STDIN_FILENO);
        hand(m_start.output, STDOUT_FILENO);
        hand(m_start.errors, STDERR_FILENO);
        for (int signal = 1; signal < NSIG; ++signal) {
            struct sigaction now{};
            if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN && now.sa_handler != SIG_DFL)
                std::signal(signal, SIG_DFL);
        }
        ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

    void hand(int descriptor, int as) const
    {
        const int handed = descriptor == as ? ::fcntl(descriptor, F_SETFD, 0) : ::dup2(descriptor, as);
        if (handed < 0)
            giveUp();
    }

    [[noreturn]] void giveUp() const
    {
        const int error = errno;
        [[maybe_unused]] const ssize_t told = ::write(m_report, &error, sizeof error);
        ::_exit(127);
    }

    const ChildStart &m_start;
    const std::vector<char *> m_arguments;
    const std::vector<char *> m_environment;
    const int m_report; ///< close-on-exec: closed when the program starts
    sigset_t m_all{};
    sigset_t m_before{};
};

/// The error that the child reported; 0 if the program was started.
int errorFrom(int report)
{
    int error = 0;
    ssize_t length = 0;
    do {
        length = ::read(report, &error, sizeof error);
    } while (length < 0 && errno == EINTR);
    return length == sizeof error ? error : 0;
}

} // namespace

Result<pid_t> startChild(const ChildStart &start)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return failure(Failure::lastSystem());
    const Descriptor report(ends[0]);
    Descriptor childsReport(ends[1]);
    const pid_t child = Launch(start, childsReport.number()).fork();
    int error = child < 0 ? errno : 0;
    childsReport.reset();
    if (child > 0)
        error = errorFrom(report.number());
    if (error == 0)
        return child;
    if (child > 0)
        ::waitpid(child, nullptr, 0);
    return failure(Failure::system(error));
}

} // namespace brellin
