#include "Runs/RunTraces.h"

#include "Guard/SystemLocations.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

namespace brellin {

namespace {

/// Steps have few folders in common: looked up by text, since taking a path apart costs more.
void addFolderOf(const Location &entry, std::set<std::string, std::less<>> &folders)
{
    const std::string_view path = entry.native();
    const std::string_view folder = path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
    if (!folders.contains(folder))
        folders.emplace(folder);
}

} // namespace

StepMarks marksOf(const JournalStep &step)
{
    return {step.to ? EntryMark::of(*step.to) : std::nullopt,
            step.trashedOriginal ? EntryMark::of(*step.trashedOriginal) : std::nullopt};
}

std::vector<Location> volumesOf(const Volumes &volumes, const std::vector<JournalStep> &steps)
{
    std::set<std::string, std::less<>> folders;
    for (const JournalStep &step : steps) {
        for (const std::optional<Location> *const left : {&step.to, &step.trashedOriginal}) {
            if (*left)
                addFolderOf(**left, folders);
        }
    }
    std::set<Location> tops;
    for (const std::string &text : folders) {
        const Location folder = text;
        // Use the real path, so that a mount point is recorded and not a symlink to it, which anyone may remove.
        const std::optional<Location> resolved = resolvedLocation(folder);
        if (Result<Location> top = volumes.top(resolved.value_or(folder)))
            tops.insert(*std::move(top));
    }
    return {tops.begin(), tops.end()};
}

Result<void> checkVolumes(const Volumes &volumes, const std::vector<Location> &tops)
{
    for (const Location &top : tops) {
        // The mount point may still exist as an empty folder.
        const Result<Location> now = volumes.top(top);
        if (!entryExists(top) || !now || *now != top)
            return failure(QStringLiteral("Das Laufwerk „%1“ ist nicht angeschlossen. Es wurde nichts geändert.")
                               .arg(shownName(top)));
    }
    return {};
}

} // namespace brellin
