#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"

#include <QString>
#include <QThreadPool>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

class ExpandedFolders;

/// One visible line of the tree.
struct FolderTreeRow {
    Location location;
    QString name;
    int depth = 0; ///< 0 for a root
    bool expanded = false;
    bool expandable = true; ///< unknown counts as yes, until the folder was read
    bool loading = false;
    bool operator==(const FolderTreeRow &) const = default;
};

/// A folder at which the tree begins.
struct FolderTreeRoot {
    Location location;
    QString name;
    bool operator==(const FolderTreeRoot &) const = default;
};

/// The folders below each root, as far as they are opened: read on demand on a worker (a server that does not answer keeps only
/// its own line loading), cached, and opened again at the next start. Links and packages are no folders
/// here. Lives on the main thread.
class FolderTree : public Model<FolderTree> {
public:
    /// What is open at the start, and where that is stored; outlives it.
    explicit FolderTree(ExpandedFolders &stored);

    /// The lines to be drawn, from top to bottom.
    Published<std::vector<FolderTreeRow>> rows;

    /// "Benutzerordner" and every volume. What lies below a root that has gone is forgotten.
    void setRoots(std::vector<FolderTreeRoot> roots);
    /// Whether hidden folders are listed.
    void setShowHidden(bool show);

    /// A failure to store it is returned; the folder is opened or closed all the same.
    Result<void> expand(const Location &folder);
    Result<void> collapse(const Location &folder);
    /// Opens the tree down to this folder, below the deepest root that holds it. The folder itself stays as it is. Not being
    /// able to store that is no failure: nobody asked for it.
    void reveal(const Location &folder);
    /// The content of this folder has changed.
    void refresh(const Location &folder);

private:
    using Names = std::vector<std::string>;
    struct Folder {
        std::optional<Names> children; ///< in order; none before it was read
        bool outdated = false;         ///< changed since the read began
        Job<Names> job;
    };
    struct Root {
        FolderTreeRoot root;
        std::shared_ptr<QThreadPool> pool; ///< of its own, so that one that does not answer holds up no other
    };

    const Root *rootOf(const Location &folder) const;
    Result<void> setExpanded(const std::vector<Location> &folders, bool expanded);
    void takeStored();
    void read(const std::string &path);
    void finished(const std::string &path, Names names);
    void forgetBelow(const std::string &path, const Names &kept);
    void rebuild();
    void addRows(std::vector<FolderTreeRow> &list, const Location &folder, const QString &name, int depth);

    ExpandedFolders &m_stored;
    std::vector<Root> m_roots;
    bool m_showHidden = false;
    std::set<std::string> m_expanded; ///< by path
    std::map<std::string, std::unique_ptr<Folder>> m_folders;
};

} // namespace brellin
