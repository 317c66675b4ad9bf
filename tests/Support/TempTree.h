#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace brellin::test {

/// A temporary folder for one test, removed with its contents at the end. Setup errors throw, which fails the test at
/// once.
class TempTree {
public:
    /// Creates it in the temporary folder, or in `parent` (for a second volume).
    explicit TempTree(const Location &parent = std::filesystem::temp_directory_path());
    ~TempTree();
    TempTree(const TempTree &) = delete;
    TempTree &operator=(const TempTree &) = delete;

    /// The folder, with symlinks resolved.
    const Location &root() const { return m_root; }
    Location path(std::string_view relative) const { return m_root / relative; }

    /// Creates an entry and missing folders above it; returns its location.
    Location file(std::string_view relative, std::string_view content = {}) const;
    Location folder(std::string_view relative) const;
    Location link(std::string_view relative, std::string_view target) const;
    /// Creates many entries: "a/b.txt=content", "folder/", "link->target".
    void lines(std::initializer_list<std::string_view> entries) const;

    /// Sets the modification and access time of an entry.
    void age(std::string_view relative, Instant modified) const;
    std::string content(std::string_view relative) const;
    bool has(std::string_view relative) const;

    /// The whole tree as sorted lines: path, kind, mode, modification time (except folders), extended attributes, and
    /// digest of the content or target of the link.
    std::string snapshot() const;

private:
    Location m_root;
};

/// The same for any folder.
std::string snapshotOf(const Location &folder);

/// A folder on another volume than the temporary folder; an empty path if there is none.
Location otherVolume();

} // namespace brellin::test
