#include "Support/FailingCalls.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <future>
#include <thread>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brellin::test {

namespace {

/// Redirects this thread's system calls of one kind to the listener whose descriptor it returns; -1 if not supported.
int handOver(int call)
{
    std::array<sock_filter, 4> filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return -1;
    return static_cast<int>(
        ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
}

void answer(int listener, const std::function<int(int)> &errorOf, int &number)
{
    seccomp_notif asked{};
    if (::ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &asked) != 0)
        return;
    seccomp_notif_resp given{};
    given.id = asked.id;
    given.error = -errorOf(number++);
    if (given.error == 0)
        given.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
    ::ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &given);
}

} // namespace

bool runWithFailingCalls(int call, const std::function<int(int number)> &errorOf, const std::function<void()> &act)
{
    std::promise<int> offered;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        const int listener = handOver(call);
        offered.set_value(listener);
        if (listener >= 0)
            act();
        done = true;
    });
    const int listener = offered.get_future().get();
    int number = 0;
    while (listener >= 0 && !done) {
        pollfd waiting{listener, POLLIN, 0};
        if (::poll(&waiting, 1, 5) > 0 && (waiting.revents & POLLIN) != 0)
            answer(listener, errorOf, number);
    }
    worker.join();
    if (listener >= 0)
        ::close(listener);
    return listener >= 0;
}

} // namespace brellin::test
