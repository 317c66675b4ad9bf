#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace brellin {

/// Changes in a watched folder since the last take().
struct FolderChanges {
    std::set<std::string> names; ///< entries added, removed or changed
    bool many = false;           ///< there are more than these
    bool gone = false;           ///< the folder itself was removed or moved

    bool operator==(const FolderChanges &) const = default;
};

/// Watches the entries of one folder, not its subfolders.
class FolderWatcher {
public:
    /// Called on a watcher thread, once until the changes are taken. Must be fast, and must not call the watcher.
    using Heard = std::function<void()>;
    enum class Means {
        Events, ///< system events; polls if the system has no watches left
        Looking ///< polls the folder's times every 2 s: notices only added and removed entries
    };

    /// Blocks as long as the volume does. Fails if `folder` is no readable folder.
    static Result<std::shared_ptr<FolderWatcher>> watch(const Location &folder, Heard heard,
                                                        Means means = Means::Events);
    /// `heard` is not called or running any more afterwards.
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher &) = delete;
    FolderWatcher &operator=(const FolderWatcher &) = delete;

    /// Returns the changes since the last call, also those that `heard` was not called for yet; it is called again for
    /// later ones.
    FolderChanges take();

private:
    class Hub;
    class Waiting;
    struct State;
    FolderWatcher(std::shared_ptr<Hub> hub, std::shared_ptr<State> state);

    const std::shared_ptr<Hub> m_hub;
    const std::shared_ptr<State> m_state;
};

} // namespace brellin
