#pragma once

#include "Disk/SystemTrash.h"
#include "Support/FakeClock.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "Transfers/TransferEngine.h"

#include <fstream>
#include <set>
#include <sstream>

#include <unistd.h>

namespace brellin::test {

/// Services for transfers: a home volume ("home") and a disk ("disk"), each with a Trash, with faults on request.
class TransferWorld {
public:
    TransferWorld()
        : m_tree(quickFolder())
        , m_volumes(m_tree.path("disk"))
        , files(faults, m_volumes)
        , m_realTrash(m_tree.path("trash"), m_volumes)
        , trash(faults, m_realTrash)
        , m_workers(m_volumes)
    {
        m_tree.lines({"home/", "disk/"});
    }

    const TempTree &tree() const { return m_tree; }
    Location home(std::string_view relative) const { return m_tree.path("home") / relative; }
    Location disk(std::string_view relative) const { return m_tree.path("disk") / relative; }
    TransferServices services() { return {files, trash, m_volumes, m_workers, m_tree.path("state/transfers"), {}}; }

    /// Home and disk as text, without the disk's Trash.
    std::string snapshot() const
    {
        std::istringstream lines(snapshotOf(m_tree.path("home")) + "--\n" + snapshotOf(m_tree.path("disk")));
        std::string text;
        for (std::string line; std::getline(lines, line);)
            text += line.starts_with(".Trash-") ? std::string() : line + "\n";
        return text;
    }
    /// The content of every file anywhere.
    std::set<std::string> contents() const
    {
        std::set<std::string> all;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(m_tree.root())) {
            const bool own = entry.path().native().find("/state/") != std::string::npos;
            if (!entry.is_regular_file() || own || entry.path().extension() == ".trashinfo")
                continue;
            std::ifstream stream(entry.path(), std::ios::binary);
            all.emplace(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
        }
        return all;
    }
    /// Hidden copies and logs.
    std::vector<Location> leftovers() const
    {
        std::vector<Location> found;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(m_tree.root())) {
            if (entry.path().filename().native().starts_with(".brellin-kopie-") || entry.path().extension() == ".log")
                found.push_back(entry.path());
        }
        return found;
    }

private:
    /// On a memory file system if possible, since hundreds of runs flush.
    static Location quickFolder()
    {
        const Location memory = "/dev/shm";
        return ::access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    }

    TempTree m_tree;
    SplitVolumes m_volumes;

public:
    FaultPlan faults;
    FakeClock clock;
    FaultyFileActions files;

private:
    SystemTrash m_realTrash;

public:
    FaultyTrash trash;

private:
    MountWorkers m_workers;
};

} // namespace brellin::test
