#pragma once

#include "Disk/WalkFolder.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// The path of a name in a folder.
std::string childPath(std::string_view folder, std::string_view name);

/// What everyone who takes part in one walk shares.
struct WalkRun {
    const WalkOptions &options;
    const JobControl *control = nullptr;
    std::uint64_t topMount = 0;      ///< the mount of the walked folder
    std::atomic<bool> ended = false; ///< a visitor said Stop, or the walk cannot go on
    std::atomic<int> error = 0;      ///< the `errno` value that says why it cannot

    bool isCancelled() const { return control != nullptr && control->cancelled(); }
    bool isOver() const { return ended.load(std::memory_order_relaxed) || isCancelled(); }
    /// What the whole walk comes to.
    Result<WalkOutcome> result(const WalkOutcome &outcome) const;
};

/// A part of a tree that can be walked on its own: everything below a folder, or what a run of its names leads to.
struct WalkBranch {
    OpenFolder folder;
    std::string path; ///< of the folder
    int depth = 0;    ///< of the entries in it
    /// The folder and those above it up to the walked one: what must not be entered again.
    std::vector<FileIdentity> ancestors;
    bool namesOnly = false; ///< only `names`, not the whole folder
    NameBlock names;

    /// The folder from which a walk starts.
    static Result<WalkBranch> top(const Location &folder);
};

/// Where the entries of a branch go, and the parts of it that others may walk.
class WalkSink {
public:
    virtual ~WalkSink() = default;
    virtual WalkStep show(const WalkEntry &entry) = 0;
    /// Whether someone has too little to do.
    virtual bool wantsBranches() const { return false; }
    virtual void take(WalkBranch) {}
};

/// Walks branches, one after the other, each folder before its content and in the file system's order. However deep the
/// tree, only `openFolders` handles are kept: of the folders farther up the remaining names are remembered instead, and
/// on the way back they are opened again from below and recognised by their identity.
class BranchWalker {
public:
    BranchWalker(WalkRun &run, WalkSink &sink, std::size_t openFolders);

    /// Fails if not even the first names of the branch's folder can be read.
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
    std::string m_path; ///< of the folder at hand
    int m_baseDepth = 0;
    std::vector<FileIdentity> m_baseAncestors;
    std::vector<Level> m_levels;    ///< from the branch's folder down to the one at hand
    std::size_t m_closed = 0;       ///< so many of them, counted from the branch's folder, have given up their handle
    std::vector<NameBlock> m_spare; ///< blocks to be used again
};

} // namespace brellin
