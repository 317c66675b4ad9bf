#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Disk/EntryRights.h"
#include "FileOperations/OperationOutcome.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace brellin {

class StepRecords;

/// What the user wants changed; anything else of an entry's rights stays.
struct RightsWish {
    std::uint32_t set = 0;   ///< permission bits (0777) to give
    std::uint32_t clear = 0; ///< permission bits to take away
    std::optional<std::uint32_t> owner = {};
    std::optional<std::uint32_t> group = {};
    bool inside = false; ///< also of everything in the folders

    bool operator==(const RightsWish &) const = default;

    /// Where an entry is: the execute bit is given only to folders and programs among what lies inside.
    enum class Place { Chosen, Inside };
    EntryRights appliedTo(const ExaminedRights &entry, Place place) const;
};

/// What a wish will do.
struct RightsPlan {
    struct Entry {
        Location entry;
        EntryMark mark;
        EntryRights before;
        EntryRights wanted;

        bool operator==(const Entry &) const = default;
    };
    std::vector<Entry> entries; ///< that change; a folder after what lies in it
    std::vector<ExaminedRights> chosen;
    int links = 0;        ///< links are left alone
    int unreadable = 0;   ///< folders whose content is not known and stays as it is
    int foreign = 0;      ///< that belong to somebody else and stay as they are
    int system = 0;       ///< that belong to the system and stay as they are
    int accessLists = 0;  ///< changed entries with an ACL
    int severalNames = 0; ///< changed files with hard links
    int setIds = 0;       ///< changed files that lose their set-id bits
    EntryFailures failures;

    bool operator==(const RightsPlan &) const = default;
};

/// Reads the entries and, if wished, what lies in them. Follows no link and enters no other volume. Blocking.
RightsPlan planRights(const std::vector<Location> &entries, const RightsWish &wish,
                      const std::function<bool(const Location &)> &mayChange, const JobControl &control);

/// What the user should know of a plan before it is carried out, one sentence each.
QStringList rightsNotes(const RightsPlan &plan);

/// Plans and carries it out, recorded as one step. Plans of more than 20,000 entries are not recorded: undo in this
/// session alone knows them.
OperationOutcome changeRights(const std::vector<Location> &entries, const RightsWish &wish,
                              const std::function<bool(const Location &)> &mayChange, StepRecords *records,
                              JobControl &control);

} // namespace brellin
