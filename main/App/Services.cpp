#include "App/Services.h"

#include "Agent/AgentKinds.h"
#include "Agent/AgentLists.h"
#include "App/ProgramFolders.h"

#include <unistd.h>

namespace brellin {

Services::Services(Writing writing)
    : m_folders(KnownFolders::ofThisUser())
    , m_defaults(settingsFolder(m_folders.home), {.longLists = longAgentLists()}, freshSettings())
    , m_settings(writing == Writing::OnWorker ? static_cast<UserDefaults &>(m_deferred) : m_defaults)
    , m_forgotten(&m_defaults)
    , m_trash(m_folders.trash.parent_path(), m_volumes)
    , m_locations(m_folders.home)
    , m_userLocations(m_folders.home, ::geteuid())
    , m_model(settings())
    , m_decoder(m_processes, decoderProgram())
    , m_pdfReader(m_processes, decoderProgram())
    , m_tagSearch({m_folders.trash.parent_path()})
    , m_stateFolder(stateFolder(m_folders.home))
    , m_records(m_stateFolder / "verlauf", settings(), m_clock)
{
}

Location Services::decoderProgram()
{
    return programFolder() / "brellin-bild";
}

TransferServices Services::forTransfers(MountWorkers &workers)
{
    const auto mayTransfer = [this](const Location &entry) { return mayChange(entry); };
    return {m_files, m_trash, m_volumes, workers, transferLogs(), mayTransfer, &m_records};
}

AgentServices Services::agentServices(UserDefaults &defaults)
{
    return {{defaults, m_files, m_trash, m_volumes, m_clock, m_locations, m_stateFolder,
             [&defaults] { return agentMayAct(defaults); }},
            m_folders,
            m_model,
            [this](const Location &pdf, const JobControl *control) { return m_pdfReader.firstPageText(pdf, control); }};
}

} // namespace brellin
