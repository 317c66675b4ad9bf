#pragma once

#include "Base/Location.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Whether the text of a script with this lower-case extension is searched for file names.
bool isReadScriptExtension(std::string_view extension);

/// What the scripts of a folder say, to be asked whether they mention a file. Careful rather than exact: a name counts as
/// mentioned in whichever form its umlauts are composed, and where blanks in it are escaped with a backslash.
class ScriptNames {
public:
    /// Reads the scripts and leaves their access times alone. One that cannot be read mentions nothing; of a huge one only
    /// the beginning is read.
    explicit ScriptNames(const std::vector<Location> &scripts);

    /// Whether any of them contains this file name. Names of fewer than three characters are not looked for.
    bool mention(std::string_view name) const;

    /// Whether any of them contains it as a whole name, not as a part of a longer one ("alt" in "alt/liste.txt" but not in
    /// "gestaltung" or "alt.bak").
    bool mentionWhole(std::string_view name) const;

    /// The first of the scripts, but for one of this very name, that contains it as a whole name; its place in the list.
    std::optional<std::size_t> firstOtherMentioningWhole(std::string_view name) const;

private:
    struct Text {
        std::size_t script = 0; ///< its place in the list
        std::string text;
    };

    void add(std::size_t script, std::string text);
    bool mayContain(std::string_view name) const;
    bool contain(std::string_view name) const;
    static bool containsWhole(const Text &text, std::string_view name);

    std::vector<std::string> m_names; ///< of the scripts
    std::vector<Text> m_texts;
    /// Which runs of six bytes occur: of nearly every name that no script mentions, one run does not.
    std::vector<bool> m_runs;
};

} // namespace brellin
