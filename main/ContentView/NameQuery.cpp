#include "ContentView/NameQuery.h"

#include "Base/Location.h"

#include <algorithm>
#include <cstring>

namespace brellin {

namespace {

bool isAscii(std::string_view text)
{
    return std::ranges::none_of(text, [](char c) { return (static_cast<unsigned char>(c) & 0x80u) != 0; });
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace

NameQuery::NameQuery(const QString &text) : m_folded(folded(text))
{
    if (const std::string bytes = m_folded.toStdString(); isAscii(bytes))
        m_ascii = bytes;
}

bool NameQuery::matches(std::string_view name) const
{
    // Fast path for ASCII names, which need no conversion.
    if (isAscii(name))
        return m_ascii && matchesAscii(name);
    return folded(shown(name)).contains(m_folded);
}

bool NameQuery::matchesAscii(std::string_view name) const
{
    const std::string &wanted = *m_ascii;
    const auto found =
        std::ranges::search(name, wanted, [](char ofName, char ofQuery) { return lower(ofName) == ofQuery; });
    return wanted.empty() || !found.empty();
}

} // namespace brellin
