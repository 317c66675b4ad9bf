#pragma once

#include "Base/Location.h"

#include <QString>

#include <vector>

namespace brellin {

/// An account in a profile of Thunderbird: its name and the folder with its mailboxes.
struct ProfileAccount {
    QString name;
    Location folder;

    bool operator==(const ProfileAccount &) const = default;
};

/// The profile folders that the profiles.ini in `root` names, as far as they exist.
std::vector<Location> profilesIn(const Location &root);

/// The accounts that the prefs.js of a profile names, sorted by name; news servers are left out. Reads the file as text:
/// it is never executed.
std::vector<ProfileAccount> accountsOf(const Location &profile);

} // namespace brellin
