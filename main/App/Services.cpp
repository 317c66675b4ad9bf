#include "App/Services.h"

#include "App/ProgramFolders.h"

namespace brellin {

namespace {

/// What nobody changes by copying and moving. Unlike the assistants, a person may go into the own dot folders, and to the
/// servers that a desktop connects below "/run".
SystemLocations systemFolders(const Location &home)
{
    std::vector<Location> refused = SystemFolders::ofThisSystem().refused;
    std::erase(refused, Location("/run"));
    return SystemLocations(home, refused);
}

/// The system's folders hold two that everybody puts own files into.
bool isEverybodys(const Location &entry)
{
    const std::optional<Location> folder = resolvedLocation(entry.parent_path());
    return folder && (isAtOrBelow(*folder, Location("/dev/shm")) || isAtOrBelow(*folder, Location("/var/tmp")));
}

} // namespace

Services::Services()
    : m_folders(KnownFolders::ofThisUser())
    , m_defaults(settingsFolder(m_folders.home))
    , m_forgotten(&m_defaults)
    , m_trash(m_folders.trash.parent_path(), m_volumes)
    , m_locations(m_folders.home)
    , m_systemFolders(systemFolders(m_folders.home))
    , m_model(m_defaults)
    , m_decoder(m_processes, programFolder() / "brellin-bild")
    , m_pdfReader(m_processes, programFolder() / "brellin-bild")
    , m_tagSearch({m_folders.trash.parent_path()})
    , m_stateFolder(stateFolder(m_folders.home))
{
}

TransferServices Services::forTransfers(MountWorkers &workers)
{
    return {m_files, m_trash, m_volumes, workers, m_stateFolder / "transfers", [this](const Location &entry) {
                return isEverybodys(entry) || m_systemFolders.isAllowedEntry(entry);
            }};
}

bool Services::mayChange(const Location &entry) const
{
    std::error_code unresolved;
    const Location folder = std::filesystem::weakly_canonical(entry.parent_path(), unresolved);
    const Location home = std::filesystem::weakly_canonical(m_folders.home, unresolved);
    return (!unresolved && isAtOrBelow(folder, home)) || m_locations.isAllowedEntry(entry);
}

AgentServices Services::agentServices(UserDefaults &defaults)
{
    return {defaults,
            m_files,
            m_trash,
            m_volumes,
            m_clock,
            m_folders,
            m_locations,
            m_model,
            [this](const Location &pdf, const JobControl *control) { return m_pdfReader.firstPageText(pdf, control); },
            m_stateFolder};
}

} // namespace brellin
