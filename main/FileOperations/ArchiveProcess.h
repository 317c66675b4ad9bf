#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/Descriptor.h"

#include <QByteArray>

#include <sys/types.h>

namespace brellin {

/// The process that reads one archive: gets it open as its input and puts out what it finds. It is ended with this object,
/// whatever it is at: it writes nothing and holds nothing.
class ArchiveProcess {
public:
    /// Starts "`program` `word`". `control` outlives it.
    static Result<ArchiveProcess> start(const Location &program, const char *word, const Descriptor &archive,
                                        const JobControl &control);
    ~ArchiveProcess();
    ArchiveProcess(ArchiveProcess &&other) noexcept;
    ArchiveProcess(const ArchiveProcess &) = delete;
    ArchiveProcess &operator=(const ArchiveProcess &) = delete;
    ArchiveProcess &operator=(ArchiveProcess &&) = delete;

    /// So many bytes of what it puts out. Fails where it ends before, and soon after a cancel.
    Result<QByteArray> read(qsizetype size);

private:
    ArchiveProcess(pid_t pid, Descriptor output, const JobControl &control);
    Result<void> fill();

    pid_t m_pid;
    Descriptor m_output;
    const JobControl *m_control;
    QByteArray m_buffer;
    qsizetype m_taken = 0; ///< of the buffer
};

} // namespace brellin
