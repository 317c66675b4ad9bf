#pragma once

#include "Base/Result.h"
#include "Disk/CopyEntryProgress.h"

#include <cstddef>
#include <cstdint>
#include <memory>

#include <sys/stat.h>

namespace brellin {

/// Copies file content by the fastest way that both volumes support: clone, copy in the kernel, or read and write.
/// Remembers what a volume does not support.
class CopyData {
public:
    explicit CopyData(CopyPulse &pulse) : m_pulse(pulse) {}

    /// Copies the bytes that `source` had at `status`; ignores data appended later, fails if it became shorter.
    /// Preserves holes. `destination` must be empty and open for writing.
    Result<void> copy(int source, const struct stat &status, int destination);
    /// Subtracts the bytes of the last file from the progress, before copying it again.
    void takeBack() { count(-m_ofFile); }

private:
    void count(std::int64_t bytes);
    bool cloned(int source, int destination);
    /// Preserves holes if the target supports them, otherwise writes zeros.
    Result<void> copyWithHoles(int source, off_t size, int destination);
    Result<void> copyExtents(int source, off_t size, int destination);
    Result<void> copyRange(int source, int destination, off_t from, off_t end);
    /// Returns the offset reached; less than `end` if the kernel cannot continue.
    Result<off_t> copyInKernel(int source, int destination, off_t from, off_t end);
    Result<void> readAndWrite(int source, int destination, off_t from, off_t end);
    char *buffer();

    CopyPulse &m_pulse;
    std::int64_t m_ofFile = 0; ///< bytes counted for the last file
    std::unique_ptr<char[]> m_buffer;
    dev_t m_device = 0; ///< source volume that the next two flags are valid for
    bool m_mayClone = true;
    bool m_mayCopyInKernel = true;
    std::size_t m_chunk = std::size_t(1) << 20; ///< bytes that the kernel copies within a few ms on this volume
};

} // namespace brellin
