#include "Runs/EntrySearch.h"

#include "Disk/Walk.h"
#include "Runs/Placement.h"

#include <algorithm>

namespace brellin {

bool isNumberedForm(std::string_view name, std::string_view wanted)
{
    if (name == wanted)
        return true;
    const std::string_view stem = stemOf(wanted);
    const std::string_view middle = stemOf(name);
    return extensionOf(name) == extensionOf(wanted) && middle.starts_with(stem) && middle.ends_with(')') &&
           middle.substr(stem.size()).starts_with(" (");
}

const std::vector<EntrySearch::Entry> &EntrySearch::entriesOf(const Location &folder)
{
    const auto known = m_folders.find(folder);
    if (known != m_folders.end())
        return known->second;
    std::vector<Entry> entries;
    const auto collect = [&](const WalkEntry &entry) {
        if (!entry.unreadable && !entry.name.starts_with(Placement::temporaryPrefix))
            entries.push_back({entry.location(), entry.attributes});
        return WalkStep::Continue;
    };
    // An unreadable folder counts as empty.
    (void)walk(folder,
               {.attributes = Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created,
                .subfolders = false},
               collect);
    return m_folders.emplace(folder, std::move(entries)).first->second;
}

std::optional<Location> EntrySearch::find(const Location &wanted, const EntryMark &seen)
{
    const std::string name = wanted.filename().native();
    for (const Entry &entry : entriesOf(wanted.parent_path())) {
        const std::string entryName = entry.location.filename().native();
        const bool named =
            entry.attributes.links <= 1 || entry.attributes.isFolder() || isNumberedForm(entryName, name);
        if (named && seen.isSame(entry.attributes) && m_found.insert(entry.location).second)
            return entry.location;
    }
    return std::nullopt;
}

} // namespace brellin
