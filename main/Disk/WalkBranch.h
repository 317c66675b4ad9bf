#pragma once

#include "Disk/WalkFolder.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Path of a name in a folder.
std::string childPath(std::string_view folder, std::string_view name);

/// State shared by all threads of a walk.
struct WalkRun {
    const WalkOptions &options;
    const JobControl *control = nullptr;
    std::uint64_t topMount = 0;      ///< mount ID of the walked folder
    std::atomic<bool> ended = false; ///< a visitor returned Stop, or the walk failed
    std::atomic<int> error = 0;      ///< `errno` value of that failure

    bool isCancelled() const { return control != nullptr && control->cancelled(); }
    bool isOver() const { return ended.load(std::memory_order_relaxed) || isCancelled(); }
    /// Result of the whole walk.
    Result<WalkOutcome> result(const WalkOutcome &outcome) const;
};

/// A part of the tree that can be walked independently: everything below a folder, or below some of its names.
struct WalkBranch {
    OpenFolder folder;
    std::string path; ///< of the folder
    int depth = 0;    ///< depth of its entries
    /// The folder and its ancestors up to the walked one, which must not be entered again.
    std::vector<FileIdentity> ancestors;
    bool namesOnly = false; ///< walk only `names`, not the whole folder
    NameBlock names;

    /// The branch for a whole walk.
    static Result<WalkBranch> top(const Location &folder);
};

/// Receives the entries of a branch, and branches for other threads.
class WalkSink {
public:
    virtual ~WalkSink() = default;
    virtual WalkStep show(const WalkEntry &entry) = 0;
    /// Whether other threads need work.
    virtual bool wantsBranches() const { return false; }
    virtual void take(WalkBranch) {}
};

/// Walks branches one after the other, each folder before its content, in directory order. Keeps only `openFolders`
/// descriptors open at any depth: for outer folders it remembers the remaining names, and on the way back reopens them
/// from below, checking their identity.
class BranchWalker {
public:
    BranchWalker(WalkRun &run, WalkSink &sink, std::size_t openFolders);

    /// Fails if the first names of the branch's folder cannot be read.
    Result<void> walk(WalkBranch branch) noexcept;
    const WalkOutcome &outcome() const { return m_outcome; }

private:
    struct Level {
        OpenFolder folder;
        NameBlock names;
        std::size_t pathLength = 0;
        std::shared_ptr<const HiddenNames> hidden;
        bool allNamesRead = false;
    };

    Result<void> walkAll(WalkBranch branch);
    Result<void> enter(OpenFolder folder, NameBlock names, bool namesOnly);
    Result<void> readNames();
    bool hasMoreNames();
    bool handOverNames();
    void pass(const WalkName &name);
    bool isLeftOut(std::string_view name) const;
    void fillEntry(const WalkName &name);
    bool isEntered(const WalkEntry &entry) const;
    void descend(const WalkName &name);
    Result<OpenFolder> openChild(const char *name);
    bool mayLoop(const OpenFolder &folder) const;
    bool isAncestor(const FileIdentity &identity) const;
    bool mayHandOver() const;
    WalkBranch branchOf(OpenFolder folder, std::string path, int depth) const;
    void leave();
    void drop();
    bool reopen(Level &level, const OpenFolder &below);
    bool giveUpOldest();
    int depth() const { return m_baseDepth + static_cast<int>(m_levels.size()) - 1; }

    WalkRun &m_run;
    WalkSink &m_sink;
    const std::size_t m_openFolders;
    WalkOutcome m_outcome;
    WalkEntry m_entry;
    std::string m_path; ///< path of the current folder
    int m_baseDepth = 0;
    std::vector<FileIdentity> m_baseAncestors;
    std::vector<Level> m_levels;    ///< from the branch's folder to the current one
    std::size_t m_closed = 0;       ///< number of levels, from the outermost, whose descriptor was closed
    std::vector<NameBlock> m_spare; ///< blocks for reuse
};

} // namespace brellin
