#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace brellin::test {

/// A folder of its own for one test, removed with everything in it at the end. Setting up fails the test at once
/// (an exception) rather than letting it run on half a tree.
class TempTree {
public:
    /// In the temporary folder, or in `parent` (a second volume).
    explicit TempTree(const Location &parent = std::filesystem::temp_directory_path());
    ~TempTree();
    TempTree(const TempTree &) = delete;
    TempTree &operator=(const TempTree &) = delete;

    /// The folder, with links resolved.
    const Location &root() const { return m_root; }
    Location path(std::string_view relative) const { return m_root / relative; }

    /// Creates an entry and the folders above it, and gives its location.
    Location file(std::string_view relative, std::string_view content = {}) const;
    Location folder(std::string_view relative) const;
    Location link(std::string_view relative, std::string_view target) const;
    /// Many at once: "a/b.txt=content", "folder/", "link->target".
    void lines(std::initializer_list<std::string_view> entries) const;

    /// Sets the modification (and access) time of an entry.
    void age(std::string_view relative, Instant modified) const;
    std::string content(std::string_view relative) const;
    bool has(std::string_view relative) const;

    /// The whole tree as sorted lines: path, kind, mode, modification time (not of folders), extended attributes, and the
    /// content's digest or the link's target.
    std::string snapshot() const;

private:
    Location m_root;
};

/// The same for any folder.
std::string snapshotOf(const Location &folder);

/// A folder on another volume than the temporary folder, empty path where this machine has none.
Location otherVolume();

} // namespace brellin::test
