#pragma once

#include "Base/Descriptor.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <sys/types.h>

namespace brellin {

/// A child process that reads one archive: gets the open archive as its input and writes what it finds to a pipe. The
/// destructor kills it; it has no state worth saving.
class ArchiveProcess {
public:
    /// Starts "`program` `word`". `control` must outlive the process object.
    static Result<ArchiveProcess> start(const Location &program, const char *word, const Descriptor &archive,
                                        const JobControl &control);
    ~ArchiveProcess();
    ArchiveProcess(ArchiveProcess &&other) noexcept;
    ArchiveProcess(const ArchiveProcess &) = delete;
    ArchiveProcess &operator=(const ArchiveProcess &) = delete;
    ArchiveProcess &operator=(ArchiveProcess &&) = delete;

    /// Reads exactly `size` bytes. Fails with EPIPE if the output ends before, and within 50 ms of a cancel.
    Result<QByteArray> read(qsizetype size);

private:
    ArchiveProcess(pid_t pid, Descriptor output, const JobControl &control);
    Result<void> fill();

    pid_t m_pid;
    Descriptor m_output;
    const JobControl *m_control;
    QByteArray m_buffer;
    qsizetype m_taken = 0; ///< bytes of the buffer already returned
};

} // namespace brellin
