#pragma once

#include "Base/Location.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Whether scripts with this lower-case extension are searched for file names.
bool isReadScriptExtension(std::string_view extension);

/// The texts of scripts, searched for mentions of file names. Errs on the side of finding a mention: matches umlauts in
/// any composition, and names whose blanks are escaped with a backslash.
class ScriptNames {
public:
    /// Reads the scripts without changing their access times. An unreadable script mentions nothing; only the beginning
    /// of a very large one is read.
    explicit ScriptNames(const std::vector<Location> &scripts);

    /// Whether any script contains this file name. Ignores names shorter than three characters.
    bool mention(std::string_view name) const;

    /// Index of the first script that contains the whole name, ignoring scripts of this very name: "alt" matches in
    /// "alt/liste.txt", but not in "gestaltung" or "alt.bak".
    std::optional<std::size_t> firstOtherMentioningWhole(std::string_view name) const;

private:
    struct Text {
        std::size_t script = 0; ///< its index in the list
        std::string text;
    };

    void add(std::size_t script, std::string text);
    bool mayContain(std::string_view name) const;
    bool contain(std::string_view name) const;
    static bool containsWhole(const Text &text, std::string_view name);

    std::vector<std::string> m_names; ///< of the scripts
    std::vector<Text> m_texts;
    /// Six-byte sequences that occur in the texts (a filter): rules out nearly every name that is not mentioned.
    std::vector<bool> m_runs;
};

} // namespace brellin
