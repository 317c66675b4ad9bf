#include "Disk/ReadAhead.h"

#include "Disk/BytesAt.h"

#include <system_error>

namespace brellin {

namespace {

/// Small enough that a piece is still in a cache when it is taken.
constexpr std::size_t pieceReadAhead = std::size_t(256) << 10;

} // namespace

ReadAhead::ReadAhead(int file) : m_file(file)
{
    for (Piece &piece : m_ring)
        piece.bytes = std::make_unique_for_overwrite<char[]>(pieceReadAhead);
    try {
        m_reader = std::jthread([this] { readAll(); });
    } catch (const std::system_error &) {
        // Out of threads: next() reads.
    }
}

ReadAhead::~ReadAhead()
{
    const std::scoped_lock lock(m_mutex);
    m_dropped = true;
    m_changed.notify_all();
}

bool ReadAhead::readInto(Piece &piece)
{
    piece.length = readAt(m_file, piece.bytes.get(), pieceReadAhead, m_at);
    const std::size_t length = piece.length.value_or(0);
    m_at += static_cast<off_t>(length);
    return length > 0;
}

void ReadAhead::readAll()
{
    for (std::size_t number = 0;; ++number) {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [&] { return m_dropped || number < m_given + pieces - 1; });
            if (m_dropped)
                return;
        }
        const bool more = readInto(m_ring[number % pieces]);
        const std::scoped_lock lock(m_mutex);
        m_read = number + 1;
        m_changed.notify_all();
        if (!more)
            return;
    }
}

Result<std::string_view> ReadAhead::next()
{
    std::unique_lock lock(m_mutex);
    Piece &piece = m_ring[m_given % pieces];
    if (m_reader.joinable())
        m_changed.wait(lock, [this] { return m_read > m_given; });
    else
        readInto(piece);
    const std::size_t length = TRY(piece.length);
    if (length > 0) {
        ++m_given;
        m_changed.notify_all();
    }
    return std::string_view(piece.bytes.get(), length);
}

} // namespace brellin
