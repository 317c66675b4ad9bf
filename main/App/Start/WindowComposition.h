#pragma once

#include "Agent/Model/ModelSettings.h"
#include "App/Services.h"
#include "App/Start/SettingsWatch.h"
#include "App/Start/StoredDataCheck.h"
#include "App/Window/DesktopPasteboard.h"
#include "App/Window/Notices.h"
#include "App/Window/Shortcuts.h"
#include "App/Window/WindowServices.h"
#include "Features/FolderColors.h"
#include "Features/FolderSizes.h"
#include "Features/Screens/PlacedThumbnails.h"
#include "Features/Screens/ThumbnailImages.h"
#include "Features/Thumbnails.h"
#include "Features/TrashList.h"
#include "FileOperations/SingleRename.h"
#include "History/HistoryList.h"
#include "Places/NetworkServers.h"
#include "Places/UDisksService.h"
#include "Places/VolumeList.h"
#include "Sidebar/ExpandedFolders.h"
#include "Sidebar/FoldedSections.h"
#include "Sidebar/Pins.h"
#include "System/SystemWorkspace.h"

namespace brellin {

/// Everything the windows need in addition to the services of every program; created only here.
class WindowComposition {
public:
    /// Both must outlive this object.
    WindowComposition(Services &services, DesktopSettings &desktop);
    ~WindowComposition();
    WindowComposition(const WindowComposition &) = delete;
    WindowComposition &operator=(const WindowComposition &) = delete;

    WindowServices forWindows();
    /// Starts observing volumes, and starts the agent: recovery, then its timer.
    void start();

    CleanupAgent &agent() { return m_agent; }

private:
    void takeNote(const TransferRecord &record);
    void follow(const std::vector<EntryMove> &moves);
    void reload(const std::set<std::string> &lists);
    void settingNotStored(const Failure &why);

    Services &m_services;
    DesktopSettings &m_desktop;
    MountWorkers m_workers;
    FolderSizes m_sizes;
    FolderColors m_colors;
    Pins m_pins;
    FoldedSections m_folded;
    ExpandedFolders m_expanded;
    SystemMountSource m_mounts;
    SystemDiskBus m_bus;
    UDisksService m_disks;
    VolumeList m_volumeList;
    NetworkServers m_servers;
    TrashList m_trash;
    Thumbnails m_thumbnails;
    ThumbnailImages m_images;
    PlacedThumbnails m_placed;
    SystemWorkspace m_workspace;
    TransferQueue m_transfers;
    LoggedFileActions m_paneFiles;
    UserUndo m_undo;
    HistoryList m_history;
    FileOperations m_operations;
    SendToTargets m_sendTo;
    DesktopPasteboard m_pasteboard;
    CleanupAgent m_agent;
    ModelSettings m_model;
    Notices m_notices;
    Shortcuts m_shortcuts;
    StoredDataCheck m_check;
    std::unique_ptr<SettingsWatch> m_watch;
};

} // namespace brellin
