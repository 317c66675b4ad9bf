#pragma once

#include "ContentView/BrowserModel.h"
#include "Disk/FolderWatcher.h"

#include <mutex>

namespace brellin {

/// Result of reading a folder. `watcher` is null if the current one stays.
struct BrowserModel::Reading {
    Listing listing;
    std::optional<DisplayedItems> rows; ///< sorted rows, if they could be made on the worker
    int wish = 0;                       ///< value of `m_displayWish` that `rows` were made for
    std::shared_ptr<FolderWatcher> watcher;
};

/// Posts watcher events to the pane from the watcher's thread; disconnected when the pane is destroyed.
struct BrowserModel::Relay {
    std::mutex mutex;
    BrowserModel *pane = nullptr;

    void heard()
    {
        const std::scoped_lock lock(mutex);
        if (pane)
            pane->m_mailbox.post([to = pane] { to->debouncedReload(); });
    }
};

} // namespace brellin
