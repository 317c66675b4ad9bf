#pragma once

#include "Base/Result.h"
#include "Disk/CopyEntryProgress.h"

#include <cstddef>
#include <memory>

#include <sys/stat.h>

namespace brellin {

/// Copies the content of files, by the best way that the two volumes offer: cloned, in the kernel, or read and written.
/// What a volume does not offer is not tried again for every file.
class CopyData {
public:
    explicit CopyData(CopyPulse &pulse) : m_pulse(pulse) {}

    /// Copies the bytes that `source` had when `status` was read; what is appended later is not taken. A source that
    /// got shorter is a failure. Holes stay holes. `destination` is empty and open for writing.
    Result<void> copy(int source, const struct stat &status, int destination);

private:
    bool cloned(int source, int destination);
    /// With holes where the target can have them, else with zeros in their places.
    Result<void> copyWithHoles(int source, off_t size, int destination);
    Result<void> copyExtents(int source, off_t size, int destination);
    Result<void> copyRange(int source, int destination, off_t from, off_t end);
    /// Where the kernel's copy ended: before `end` where it cannot go on.
    Result<off_t> copyInKernel(int source, int destination, off_t from, off_t end);
    Result<void> readAndWrite(int source, int destination, off_t from, off_t end);
    char *buffer();

    CopyPulse &m_pulse;
    std::unique_ptr<char[]> m_buffer;
    dev_t m_device = 0; ///< the source volume for which the next two hold
    bool m_mayClone = true;
    bool m_mayCopyInKernel = true;
    std::size_t m_chunk = std::size_t(1) << 20; ///< bytes that the kernel copies within a few milliseconds here
};

} // namespace brellin
