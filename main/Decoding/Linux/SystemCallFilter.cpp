#include "Decoding/Linux/SystemCallFilter.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <vector>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace brellin {

namespace {

#if defined(__x86_64__)
constexpr unsigned ownArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned ownArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned ownArchitecture = 0; // no filter
#endif

/// Numbers from here on are x32 variants of the same calls.
constexpr unsigned firstForeignCall = 0x40000000;

constexpr unsigned writingFlags = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;

constexpr auto forbidden = std::to_array<unsigned>({
    // connections
    __NR_socket,
    __NR_socketpair,
    __NR_connect,
    __NR_bind,
    __NR_listen,
    __NR_sendto,
    __NR_sendmsg,
    __NR_sendmmsg,
    // other processes
    __NR_kill,
    __NR_ptrace,
    __NR_process_vm_readv,
    __NR_process_vm_writev,
    // changes to the file system
    __NR_unlinkat,
    __NR_renameat2,
    __NR_mkdirat,
    __NR_linkat,
    __NR_symlinkat,
    __NR_mknodat,
    __NR_fchmod,
    __NR_fchmodat,
    __NR_fchown,
    __NR_fchownat,
    __NR_truncate,
    __NR_ftruncate,
    __NR_fallocate,
    __NR_utimensat,
    __NR_setxattr,
    __NR_lsetxattr,
    __NR_fsetxattr,
    __NR_removexattr,
    __NR_lremovexattr,
    __NR_fremovexattr,
    __NR_mount,
    __NR_umount2,
    __NR_chroot,
    __NR_openat2,
    // ways around all of these
    __NR_io_uring_setup,
    __NR_bpf,
    __NR_userfaultfd,
    __NR_perf_event_open,
    __NR_add_key,
    __NR_request_key,
    __NR_keyctl,
#if defined(__NR_renameat)
    __NR_renameat,
#endif
#if defined(__x86_64__) // older variants, which newer architectures lack
    __NR_unlink,
    __NR_rename,
    __NR_mkdir,
    __NR_rmdir,
    __NR_link,
    __NR_symlink,
    __NR_mknod,
    __NR_chmod,
    __NR_chown,
    __NR_lchown,
    __NR_utime,
    __NR_utimes,
    __NR_futimesat,
    __NR_creat,
#endif
});

/// Refused in addition, unless the process is to start a program.
constexpr auto starting = std::to_array<unsigned>({
    __NR_execve,
    __NR_execveat,
#if defined(__x86_64__)
    __NR_fork,
    __NR_vfork,
#endif
});

struct Opening {
    unsigned call;
    unsigned flagsArgument;
};
constexpr auto openings = std::to_array<Opening>({
    {__NR_openat, 2},
#if defined(__NR_open)
    {__NR_open, 1},
#endif
});

constexpr unsigned refuse = SECCOMP_RET_ERRNO | EPERM;

class FilterProgram {
public:
    explicit FilterProgram(ConfinedWork work)
    {
        load(offsetof(seccomp_data, arch));
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ownArchitecture, 1, 0));
        add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
        load(offsetof(seccomp_data, nr));
        add(BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, firstForeignCall, 0, 1));
        add(BPF_STMT(BPF_RET | BPF_K, refuse));
        for (const unsigned call : forbidden)
            answer(call, refuse);
        if (work != ConfinedWork::OtherProgram) {
            for (const unsigned call : starting)
                answer(call, refuse);
            allowOnlyThreads();
        }
        for (const Opening &opening : openings) {
            add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, opening.call, 0, 4));
            load(offsetof(seccomp_data, args) + opening.flagsArgument * sizeof(seccomp_data::args[0]));
            add(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, writingFlags, 0, 1));
            add(BPF_STMT(BPF_RET | BPF_K, refuse));
            add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
        }
        add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    }

    sock_fprog program() { return {static_cast<unsigned short>(m_steps.size()), m_steps.data()}; }

private:
    void answer(unsigned call, unsigned with)
    {
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
        add(BPF_STMT(BPF_RET | BPF_K, with));
    }
    /// Allows threads, which scaling a large picture waits for, but no processes. The flags of clone3() are invisible to a
    /// filter, so it gets ENOSYS and the C library falls back to clone().
    void allowOnlyThreads()
    {
        answer(__NR_clone3, SECCOMP_RET_ERRNO | ENOSYS);
        add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_clone, 0, 4));
        load(offsetof(seccomp_data, args));
        add(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, CLONE_THREAD, 1, 0));
        add(BPF_STMT(BPF_RET | BPF_K, refuse));
        add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    }
    void add(const sock_filter &step) { m_steps.push_back(step); }
    /// Loads the lower half of a field, which comes first on these little-endian machines.
    void load(std::size_t field) { add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(field))); }

    std::vector<sock_filter> m_steps;
};

} // namespace

Result<void> filterSystemCalls(ConfinedWork work)
{
    if (ownArchitecture == 0)
        return failure(Failure::system(EINVAL));
    FilterProgram filter(work);
    const sock_fprog program = filter.program();
    if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) != 0)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace brellin
