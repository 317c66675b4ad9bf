#pragma once

#include "Support/TempTree.h"

#include <string_view>
#include <vector>

namespace brellin::test {

/// Folders of a tree that cannot be read while this lives. Root reads everything, so meanwhile the process, with the
/// programs it starts, is another user, who owns the tree.
class ClosedFolders {
public:
    ClosedFolders(const TempTree &tree, std::initializer_list<std::string_view> folders);
    ~ClosedFolders();
    ClosedFolders(const ClosedFolders &) = delete;
    ClosedFolders &operator=(const ClosedFolders &) = delete;
    /// False if the privileges could not be dropped.
    explicit operator bool() const;

private:
    std::vector<Location> m_folders;
    bool m_wasRoot;
};

} // namespace brellin::test
