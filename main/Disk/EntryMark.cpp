#include "Disk/EntryMark.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace brellin {

namespace {

template <class Number>
bool takeNumber(std::string_view &text, Number &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (text.starts_with(':'))
        text.remove_prefix(1);
    return true;
}

bool takeInstant(std::string_view &text, Instant &instant)
{
    std::int64_t nanoseconds = 0;
    const bool taken = takeNumber(text, nanoseconds);
    instant = Instant(std::chrono::nanoseconds(nanoseconds));
    return taken;
}

template <class Number>
void appendNumber(std::string &text, Number number)
{
    if (!text.empty())
        text += ':';
    std::array<char, 20> digits; // NOLINT(*-member-init): filled by to_chars
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

} // namespace

std::optional<EntryMark> EntryMark::of(const Location &location)
{
    const Result<FileAttributes> now = readAttributes(location);
    return now ? std::optional(of(*now)) : std::nullopt;
}

bool EntryMark::isOf(const FileAttributes &now) const
{
    if (created && now.created && *created != *now.created)
        return false;
    // Device numbers change at a restart and inodes are reused, so without a birth they prove nothing.
    const bool born = created && now.created && now.identity.inode == state.identity.inode;
    return born || (now.size == state.size && now.modified == state.modified);
}

bool EntryMark::isSame(const FileAttributes &now) const
{
    const bool born = created && now.created && *created == *now.created;
    const bool asItWas = now.size == state.size && now.modified == state.modified;
    return now.identity.inode == state.identity.inode && (born || asItWas);
}

bool EntryMark::isAt(const Location &location) const
{
    const Result<FileAttributes> now = readAttributes(location);
    return now && isSame(*now);
}

std::string EntryMark::ascii() const
{
    std::string text;
    text.reserve(5 * std::string_view("-9223372036854775808:").size());
    appendNumber(text, state.identity.device);
    appendNumber(text, state.identity.inode);
    appendNumber(text, state.size);
    appendNumber(text, state.modified.time_since_epoch().count());
    if (created)
        appendNumber(text, created->time_since_epoch().count());
    return text;
}

std::optional<EntryMark> EntryMark::parse(const QString &text)
{
    const std::string bytes = text.toStdString();
    std::string_view rest = bytes;
    EntryMark mark;
    if (!takeNumber(rest, mark.state.identity.device) || !takeNumber(rest, mark.state.identity.inode) ||
        !takeNumber(rest, mark.state.size) || !takeInstant(rest, mark.state.modified))
        return std::nullopt;
    if (Instant birth; !rest.empty() && takeInstant(rest, birth))
        mark.created = birth;
    return rest.empty() ? std::optional(mark) : std::nullopt;
}

} // namespace brellin
