#pragma once

#include "ContentView/BrowserModel.h"
#include "Disk/FolderWatcher.h"

#include <mutex>

namespace brellin {

/// What a reading of the folder brings back. Without a watcher the one that is there stays.
struct BrowserModel::Reading {
    Listing listing;
    std::optional<DisplayedItems> rows; ///< of the listing, where they could be made with it
    int wish = 0;                       ///< in the order that was wanted then
    std::shared_ptr<FolderWatcher> watcher;
};

/// The way from a watcher's thread to the pane, cut when the pane goes.
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
