#include "Support/AgentWorld.h"

#include "Agent/AgentKinds.h"
#include "Agent/AgentLists.h"
#include "Runs/Placement.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace brellin::test {

namespace fs = std::filesystem;

namespace {

/// The standard folders of an account with this home folder.
KnownFolders foldersIn(const Location &home)
{
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", QByteArray::fromStdString(home.native()));
    KnownFolders folders = KnownFolders::ofThisUser();
    qputenv("HOME", before);
    return folders;
}

} // namespace

AgentWorld::AgentWorld()
    : m_storedDefaults(m_tree.path("settings"), {}, freshSettings())
    , m_defaults(faults, m_storedDefaults)
    , m_volumes(m_tree.path("disk"))
    , m_files(faults, m_volumes)
    , m_realTrash(m_tree.path("trash"), m_volumes)
    , m_trash(faults, m_realTrash)
    , m_locations(m_tree.path("home"))
{
    m_tree.lines({"home/", "disk/"});
    folders = foldersIn(m_tree.path("home"));
    folders.trash = m_tree.path("trash/files");
}

AgentServices AgentWorld::services()
{
    return {{m_defaults, m_files, m_trash, m_volumes, clock, m_locations, m_tree.path("state"),
             [this] { return agentMayAct(m_defaults); }},
            folders,
            model,
            {}};
}

std::string AgentWorld::snapshot() const
{
    std::istringstream lines(snapshotOf(m_tree.path("home")) + "--\n" + snapshotOf(m_tree.path("disk")));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(".Trash-"))
            text += line + "\n";
    }
    return text;
}

std::set<std::string> AgentWorld::contents() const
{
    std::set<std::string> all;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(m_tree.root())) {
        const std::string below = entry.path().lexically_relative(m_tree.root()).native();
        if (!entry.is_regular_file() || below.starts_with("settings") || below.starts_with("state") ||
            below.ends_with(".trashinfo"))
            continue;
        std::ifstream stream(entry.path(), std::ios::binary);
        all.emplace(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return all;
}

int AgentWorld::leftovers() const
{
    int count = 0;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(m_tree.root()))
        count += entry.path().filename().native().starts_with(Placement::temporaryPrefix) ? 1 : 0;
    return count;
}

bool AgentWorld::hasJournals() const
{
    std::error_code error;
    const fs::directory_iterator journals(m_tree.path("state/journal"), error);
    return !error && journals != fs::directory_iterator();
}

} // namespace brellin::test
