#pragma once

#include "Agent/AgentServices.h"
#include "App/UserLocations.h"
#include "Disk/SystemTrash.h"
#include "Features/TagSearch.h"
#include "Records/StepRecords.h"
#include "System/Decoders.h"
#include "System/DeferredUserDefaults.h"
#include "System/FileUserDefaults.h"
#include "System/LocalModelServer.h"
#include "System/MemoryUserDefaults.h"
#include "System/PdfReader.h"
#include "System/ProcessRunner.h"
#include "Transfers/TransferServices.h"

namespace brellin {

/// The real services, created only here. All paths derive from HOME and the XDG variables.
class Services {
public:
    /// When plain settings are written: before `setValue` returns, or on a worker, for programs with windows.
    enum class Writing { AtOnce, OnWorker };
    explicit Services(Writing writing = Writing::AtOnce);

    /// For an agent that stores its settings.
    AgentServices forAgent() { return agentServices(settings()); }
    /// For an agent that only proposes: what it stores is discarded with these services.
    AgentServices forProposingAgent() { return agentServices(m_forgotten); }

    TransferServices forTransfers(MountWorkers &workers);

    const KnownFolders &folders() const { return m_folders; }
    const Volumes &volumes() const { return m_volumes; }
    FileActions &files() { return m_files; }
    Trash &trash() { return m_trash; }
    Clock &clock() { return m_clock; }
    ProcessRunner &processes() { return m_processes; }
    Decoder &decoder() { return m_decoder; }
    /// "brellin-bild" next to the running program.
    static Location decoderProgram();
    /// Whether the user's own commands may change or create an entry.
    bool mayChange(const Location &entry) const { return m_userLocations.mayChange(entry); }
    /// The folder of transfer logs.
    Location transferLogs() const { return m_stateFolder / "transfers"; }
    /// The folder of the agent's journals.
    Location journals() const { return m_stateFolder / "journal"; }
    /// The folders of the logs of archive operations and of batch renames.
    Location archiveLogs() const { return m_stateFolder / "archive"; }
    Location renameLogs() const { return m_stateFolder / "umbenennen"; }
    UserDefaults &settings() { return m_settings; }
    /// What `settings()` are with `Writing::OnWorker`.
    DeferredUserDefaults &deferredSettings() { return m_deferred; }
    /// Settings for read-only use: writes are discarded.
    UserDefaults &forgottenSettings() { return m_forgotten; }
    /// The history of the user's own steps.
    StepRecords &records() { return m_records; }
    const TagSearch &tagSearch() const { return m_tagSearch; }

private:
    AgentServices agentServices(UserDefaults &defaults);

    KnownFolders m_folders;
    FileUserDefaults m_defaults;
    DeferredUserDefaults m_deferred{m_defaults};
    UserDefaults &m_settings; ///< one of these two
    MemoryUserDefaults m_forgotten;
    SystemVolumes m_volumes;
    SystemTrash m_trash;
    DiskFileActions m_files;
    SystemClock m_clock;
    SystemLocations m_locations;
    UserLocations m_userLocations;
    LocalModelServer m_model;
    SystemProcessRunner m_processes;
    DecoderProcesses m_decoder;
    PdfReader m_pdfReader;
    WalkTagSearch m_tagSearch;
    Location m_stateFolder;
    StepRecords m_records;
};

} // namespace brellin
