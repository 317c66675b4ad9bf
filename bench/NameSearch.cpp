// Prints all paths below a folder whose name contains a text, ignoring case: NameSearch FOLDER TEXT

#include "Disk/Walk.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace brellin;

namespace {

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char letter) { return static_cast<signed char>(letter) >= 0; });
}

/// Whether names contain a text, ignoring case: a fast path for ASCII, full case folding for other names.
class NameFilter {
public:
    explicit NameFilter(std::string_view wanted)
        : m_text(folded(shown(wanted)))
        , m_bytes(wanted)
        , m_ascii(isAscii(wanted))
    {
        std::ranges::transform(m_bytes, m_bytes.begin(), lowered);
    }

    bool matches(std::string_view name) const
    {
        if (m_ascii && isAscii(name))
            return !std::ranges::search(name, m_bytes, {}, lowered).empty();
        return folded(shown(name)).contains(m_text);
    }

private:
    QString m_text;
    std::string m_bytes;
    bool m_ascii;
};

} // namespace

int main(int count, char **arguments)
{
    if (count != 3)
        return 2;
    const NameFilter filter(arguments[2]);
    std::vector<std::string> found(static_cast<size_t>(walkThreads()));
    const auto done = walkParallel(arguments[1], {}, [&](const WalkEntry &entry, int thread) {
        if (filter.matches(entry.name))
            found[static_cast<size_t>(thread)].append(entry.folder).append("/").append(entry.name).append("\n");
        return WalkStep::Continue;
    });
    for (const std::string &lines : found)
        std::fwrite(lines.data(), 1, lines.size(), stdout);
    return done ? 0 : 1;
}
