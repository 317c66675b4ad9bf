#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "ContentView/BrowserModel.h"
#include "FileOperations/BatchRename.h"
#include "FileOperations/FileOperations.h"
#include "SendTo/SendToTargets.h"
#include "Transfers/TransferQueue.h"

namespace brellin {

class ApplicationChoice;
class Decoder;
class DesktopSettings;
class ExpandedFolders;
class FoldedSections;
class HistoryList;
class NetworkServers;
class Notices;
class Pins;
class Shortcuts;
class StepRecords;
class ThumbnailImages;
class TrashList;
class VolumeList;

/// Services shared by all windows; all outlive the windows.
struct WindowServices {
    BrowserServices panes;
    AgentPorts agent;
    Pins &pins;
    FoldedSections &folded;
    ExpandedFolders &expanded;
    VolumeList &volumeList;
    NetworkServers &servers;
    TrashList &trash;
    ThumbnailImages &thumbnails;
    Decoder &decoder;
    DesktopSettings &desktop;
    Clock &clock;
    TransferQueue &transfers;
    TransferServices forTransfers;
    FileOperations &operations;
    UserUndo &undo;
    SendToTargets &sendTo;
    BatchRenameServices renaming;
    ProcessRunner &processes;
    ApplicationChoice &applications;
    Notices &notices;
    StepRecords &records;
    HistoryList &history;
    Shortcuts &shortcuts;

    /// Whether file work is running that quitting would interrupt.
    bool busy() const;
    UserDefaults &defaults() const { return panes.defaults; }
    const KnownFolders &folders() const { return panes.folders; }
};

} // namespace brellin
