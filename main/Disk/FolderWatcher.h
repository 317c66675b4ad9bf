#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace brellin {

/// What happened in a watched folder since it was last told.
struct FolderChanges {
    std::set<std::string> names; ///< of entries that came, went or changed; not all where it was many
    bool gone = false;           ///< the folder itself was removed or moved away

    bool operator==(const FolderChanges &) const = default;
};

/// Watches the entries of one folder, not what lies deeper, for as long as it lives.
class FolderWatcher {
public:
    /// Called on a thread of the watchers, once until the changes are taken. Quick, and calls nothing of the watcher.
    using Heard = std::function<void()>;
    enum class Means {
        Events, ///< by the system's events; where it has none left to give, by looking
        Looking ///< every two seconds at the folder's times: sees what comes and goes only
    };

    /// Blocks as long as the volume does. Fails for what is no folder that can be read.
    static Result<std::shared_ptr<FolderWatcher>> watch(const Location &folder, Heard heard,
                                                        Means means = Means::Events);
    /// After it `heard` is not called any more, and no call is under way.
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher &) = delete;
    FolderWatcher &operator=(const FolderWatcher &) = delete;

    /// What happened since the last time; `heard` is called again for what comes now.
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
