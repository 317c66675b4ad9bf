#include "MailScanner/Mbox.h"

#include "Base/Descriptor.h"
#include "Disk/BytesAt.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace brellin {

namespace {

constexpr std::size_t pieceBytes = std::size_t(1) << 20;
constexpr std::size_t mostHeaderBytes = std::size_t(256) * 1024;
/// A longer "From " line is text.
constexpr std::size_t mostLineBytes = 1000;
constexpr std::string_view mark = "\nFrom ";
constexpr int deletedFlag = 0x0008;

/// "Name: …", or a second, quoted separator, which some exports write.
bool isHeaderLine(std::string_view line)
{
    if (line.starts_with(">From "))
        return true;
    const std::size_t colon = line.find(':');
    return colon != std::string_view::npos && colon > 0 &&
           std::ranges::all_of(line.substr(0, colon), [](char c) { return c > ' ' && c < '\x7F'; });
}

bool isDeleted(const QByteArray &header)
{
    static const QByteArray field = "X-Mozilla-Status:";
    const qsizetype at = header.startsWith(field) ? 0 : header.indexOf('\n' + field) + 1;
    if (at == 0 && !header.startsWith(field))
        return false;
    const qsizetype value = at + field.size();
    return (header.mid(value, header.indexOf('\n', value) - value).trimmed().toInt(nullptr, 16) & deletedFlag) != 0;
}

/// Reads through a window, whose positions are those of the file.
class MboxReader {
public:
    MboxReader(Descriptor file, const JobControl *control) : m_file(std::move(file)), m_control(control) {}

    Result<void> read(const std::function<bool(const MboxMessage &)> &visit)
    {
        TRY(readOn());
        std::int64_t at = isSeparator(0) ? 0 : TRY(nextSeparator(0));
        while (at >= 0) {
            MboxMessage message = TRY(headAt(at));
            const std::int64_t headEnd = message.offset + static_cast<std::int64_t>(message.header.size());
            at = TRY(nextSeparator(std::max(message.offset, headEnd - 1)));
            message.end = at < 0 ? end() : at;
            if (!visit(message))
                return {};
        }
        return {};
    }

private:
    std::int64_t end() const { return m_begin + static_cast<std::int64_t>(m_bytes.size()); }
    std::string_view from(std::int64_t position) const
    {
        return std::string_view(m_bytes).substr(static_cast<std::size_t>(position - m_begin));
    }

    Result<void> readOn()
    {
        if (m_control && m_control->cancelled())
            return failure(Failure::cancelled());
        const std::int64_t at = end();
        const std::size_t old = m_bytes.size();
        m_bytes.resize(old + pieceBytes);
        const Result<std::size_t> got = readAt(m_file.number(), m_bytes.data() + old, pieceBytes, at);
        m_bytes.resize(old + got.value_or(0));
        if (!got)
            return failure(got.error());
        m_atEnd = *got == 0;
        return {};
    }

    /// Has at least `size` bytes behind a position in the window, unless the file ends before.
    Result<void> hold(std::int64_t position, std::size_t size)
    {
        while (!m_atEnd && from(position).size() < size)
            TRY(readOn());
        return {};
    }

    /// The first separator whose line end before it stands at or behind `position`; -1 if there is none.
    Result<std::int64_t> nextSeparator(std::int64_t position)
    {
        while (true) {
            const std::string_view text = from(position);
            if (const void *const hit = ::memmem(text.data(), text.size(), mark.data(), mark.size())) {
                position += static_cast<const char *>(hit) - text.data() + 1;
                TRY(hold(position, 2 * mostLineBytes));
                if (isSeparator(position))
                    return position;
                continue;
            }
            if (m_atEnd)
                return -1;
            // Keep what a mark across the border and the line before it need.
            position = std::max(position, end() - static_cast<std::int64_t>(mark.size()));
            const std::int64_t kept = std::max(m_begin, position - 2);
            m_bytes.erase(0, static_cast<std::size_t>(kept - m_begin));
            m_begin = kept;
            TRY(readOn());
        }
    }

    bool isSeparator(std::int64_t position) const
    {
        const std::string_view text = from(position).substr(0, 2 * mostLineBytes);
        const std::size_t lineEnd = text.find('\n');
        if (!text.starts_with(mark.substr(1)) || lineEnd == std::string_view::npos || !isBehindEmptyLine(position))
            return false;
        const std::string_view next = text.substr(lineEnd + 1);
        return isHeaderLine(next.substr(0, next.find('\n')));
    }

    bool isBehindEmptyLine(std::int64_t position) const
    {
        if (position < 2)
            return true;
        const char last = from(position - 2).front();
        return last == '\n' || (last == '\r' && (position == 2 || from(position - 3).front() == '\n'));
    }

    Result<MboxMessage> headAt(std::int64_t position)
    {
        TRY(hold(position, mostHeaderBytes));
        const std::string_view text = from(position).substr(0, mostHeaderBytes);
        const std::size_t lineEnd = text.find('\n');
        const std::string_view rest = text.substr(lineEnd + 1);
        std::size_t length = rest.find("\n\n");
        std::size_t closing = 2;
        if (const std::size_t dos = rest.find("\r\n\r\n"); dos < length) {
            length = dos;
            closing = 4;
        }
        const std::string_view header = length == std::string_view::npos ? rest : rest.substr(0, length + closing);
        MboxMessage message;
        message.offset = position + static_cast<std::int64_t>(lineEnd) + 1;
        message.separator = QByteArray(text.data(), static_cast<qsizetype>(lineEnd)).trimmed();
        message.header = QByteArray(header.data(), static_cast<qsizetype>(header.size()));
        message.deleted = isDeleted(message.header);
        return message;
    }

    Descriptor m_file;
    const JobControl *m_control;
    std::string m_bytes;
    std::int64_t m_begin = 0;
    bool m_atEnd = false;
};

} // namespace

Result<void> readMbox(const Location &file, const std::function<bool(const MboxMessage &)> &visit,
                      const JobControl *control)
{
    Descriptor open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    struct stat status{};
    if (::fstat(open.number(), &status) != 0)
        return failure(Failure::lastSystem());
    if (!S_ISREG(status.st_mode))
        return failure(Failure::system(EINVAL));
    return MboxReader(std::move(open), control).read(visit);
}

} // namespace brellin
