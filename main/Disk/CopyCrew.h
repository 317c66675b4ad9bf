#pragma once

#include "Disk/CopyFile.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace brellin {

/// Files of a folder not copied yet, plus one while the walk is in it. Whoever brings it to 0 closes the folder.
using PendingFiles = std::shared_ptr<std::atomic<std::size_t>>;

/// A folder whose files are copied while the walk goes on. The walk keeps only `pending`, so that the descriptors are
/// closed with the last file.
struct CopyFolder {
    Descriptor source;
    Descriptor destination;
    SourceStatus status;            ///< of the source
    std::uint64_t path;             ///< from `OwnEntries::pathMark`
    std::string relative;           ///< below the copied folder, "" for that one
    std::vector<std::string> files; ///< names in it
    std::size_t next = 0;           ///< the first of them that nobody has taken
    PendingFiles pending = std::make_shared<std::atomic<std::size_t>>(0);

    CopyPlace place() const
    {
        return {path, false, [this] { return relative; }};
    }
};

/// The threads of one copy: the one that walks the source, and a helper once there are many files. The helper takes the
/// oldest folder and the walk the newest, since creating files in one folder is serialised by the kernel.
class CopyCrew {
public:
    explicit CopyCrew(CopyCommon &common) : m_common(common), m_helping(common) {}
    /// Stops the copy if it is still running.
    ~CopyCrew();
    CopyCrew(const CopyCrew &) = delete;
    CopyCrew &operator=(const CopyCrew &) = delete;

    /// Counts a folder's files. Whether to hand them over: from 32 files in the whole copy on.
    bool wants(std::size_t files);
    void add(std::shared_ptr<CopyFolder> folder);
    /// Copies files with `own`, the walking thread's, while the queue is full: it holds folders open.
    Result<void> makeRoom(CopyFile &own);
    /// Copies the rest and waits for the helper, whose lost metadata is added to that of `own`.
    Result<void> finish(CopyFile &own);
    /// Ends the helper and drops what is queued.
    void stop();
    /// Why the helper failed; valid after `finish` or `stop`.
    const std::optional<Failure> &failure() const { return m_failure; }
    /// The file that the walking thread copies, relative to the copied folder; nothing while it walks.
    const std::optional<std::string> &current() const { return m_current; }

private:
    enum class Take { Oldest, Newest };
    struct Portion {
        std::shared_ptr<CopyFolder> folder;
        std::size_t from;
        std::size_t end;
    };

    void startHelper();
    void help();
    Result<void> work(const Portion &portion, CopyFile &file, std::optional<std::string> *current) const;
    Result<void> copied(CopyFolder &folder, std::size_t number, CopyFile &file) const;
    std::optional<Portion> take(Take which);
    bool isFull();
    bool awaitHelper();

    CopyCommon &m_common;
    CopyFile m_helping; ///< the helper's
    std::size_t m_files = 0;
    std::optional<std::string> m_current;
    std::optional<Failure> m_failure;
    std::mutex m_mutex; ///< guards the members below
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<CopyFolder>> m_waiting;
    bool m_working = false; ///< the helper
    bool m_over = false;
    std::jthread m_helper;
};

/// Adds the path to a failure inside the tree, or only the name if the path is too long for one line. A cancel is
/// returned unchanged.
Failure namedFailure(Failure why, std::string folder, std::string_view name);

} // namespace brellin
