#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Mailbox.h"
#include "Base/Published.h"
#include "Base/Result.h"

#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

class ExpandedFolders;
class FolderWatcher;

/// One visible row of the tree.
struct FolderTreeRow {
    Location location;
    QString name;
    int depth = 0; ///< 0 for roots
    bool expanded = false;
    bool expandable = true; ///< true until the folder was read
    bool loading = false;
    bool operator==(const FolderTreeRow &) const = default;
};

/// A folder at the top level of the tree.
struct FolderTreeRoot {
    Location location;
    QString name;
    bool operator==(const FolderTreeRoot &) const = default;
};

/// The visible rows of the folder tree. Folders are read on demand, on one pool per root, so that a server that does
/// not respond blocks only its own rows, and cached. Expanded folders are stored, and watched for changes, unless there
/// are many. Symlinks do not count as folders. Lives on the main thread.
class FolderTree : public Model<FolderTree> {
public:
    /// Starts with the folders expanded in `stored`, which must outlive it.
    explicit FolderTree(ExpandedFolders &stored);
    ~FolderTree() override;

    /// From top to bottom.
    Published<std::vector<FolderTreeRow>> rows;

    /// "Benutzerordner" and every volume. Cached folders below removed roots are dropped.
    void setRoots(std::vector<FolderTreeRoot> roots);
    /// Whether to list hidden folders.
    void setShowHidden(bool show);

    /// For the user, with what it lies in. Expands in any case; returns the failure if that cannot be stored.
    Result<void> expand(const Location &folder);
    Result<void> collapse(const Location &folder);
    /// Expands all folders above this one, from the deepest root that contains it, for as long as the pane is there.
    void reveal(const Location &folder);
    /// Collapses what was only revealed, except the folder and those above it.
    void leave(const Location &folder);
    /// Call when the content of this folder has changed.
    void refresh(const Location &folder);
    /// Re-reads all folders read so far.
    void refreshAll();

private:
    using Names = std::vector<std::string>;
    struct Relay;
    struct Answer {
        Names names;
        bool gone = false;
        std::shared_ptr<FolderWatcher> watcher;
    };
    struct Folder {
        std::optional<Names> children; ///< sorted; none before the first read
        bool outdated = false;         ///< changed since the current read began
        Job<Answer> job;
        std::shared_ptr<FolderWatcher> watcher; ///< only of expanded folders
    };
    struct Root {
        FolderTreeRoot root;
        std::shared_ptr<QThreadPool> pool; ///< one per root, so that an unresponsive one does not block others
    };

    const Root *rootOf(const Location &folder) const;
    bool isExpanded(const std::string &path) const { return m_expanded.contains(path) || m_revealed.contains(path); }
    std::vector<Location> foldersAbove(const Location &folder) const;
    void takeStored();
    void read(const std::string &path);
    void finished(const std::string &path, Answer answer);
    bool mayWatch(const std::string &path) const;
    void heard(const std::string &path);
    void readHeard();
    void forgetBelow(const std::string &path, const Names &kept);
    void rebuild();
    void addRows(std::vector<FolderTreeRow> &list, const Location &folder, const QString &name, int depth);

    ExpandedFolders &m_stored;
    std::vector<Root> m_roots;
    bool m_showHidden = false;
    std::set<std::string> m_expanded; ///< paths, by the user; stored
    std::set<std::string> m_revealed; ///< others that lead to the pane's folder
    std::map<std::string, std::unique_ptr<Folder>> m_folders;
    std::set<std::string> m_heard; ///< changed, waiting for `m_soon`
    QTimer m_soon;
    Mailbox m_mailbox;              ///< for watcher events
    std::shared_ptr<Relay> m_relay; ///< connects watchers to this tree
};

} // namespace brellin
