#pragma once

#include "Base/Result.h"

#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

#include <sys/types.h>

namespace brellin {

/// Reads an open file in pieces on a thread of its own, ahead of the caller. If no thread can be started, it reads on
/// the calling one.
class ReadAhead {
public:
    /// Starts at the beginning. `file` must outlive this.
    explicit ReadAhead(int file);
    /// Waits for the current read.
    ~ReadAhead();
    ReadAhead(const ReadAhead &) = delete;
    ReadAhead &operator=(const ReadAhead &) = delete;

    /// The next bytes, valid until the next call; empty at the end. After a failure or the end it returns the same
    /// again.
    Result<std::string_view> next();

private:
    static constexpr std::size_t pieces = 4;
    struct Piece {
        std::unique_ptr<char[]> bytes;
        Result<std::size_t> length = std::size_t(0);
    };

    void readAll();
    /// False at the end and after a failure.
    bool readInto(Piece &piece);

    const int m_file;
    off_t m_at = 0; ///< of the next read; used by the thread that reads only
    std::array<Piece, pieces> m_ring;
    std::mutex m_mutex; ///< guards the members below
    std::condition_variable m_changed;
    std::size_t m_read = 0;  ///< pieces
    std::size_t m_given = 0; ///< pieces; the caller still uses the last one
    bool m_dropped = false;
    std::jthread m_reader;
};

} // namespace brellin
