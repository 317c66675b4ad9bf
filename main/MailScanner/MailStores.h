#pragma once

#include "Base/Location.h"
#include "MailScanner/MailStore.h"

#include <optional>
#include <vector>

namespace brellin {

/// Where mail programs keep mail on this machine.
struct MailPlaces {
    Location home;
    Location data;                 ///< the user's data folder, ~/.local/share
    std::optional<Location> other; ///< chosen by the user ("mailStorePath")

    /// All folders looked into, for people who ask why nothing was found.
    std::vector<Location> all() const;
};

/// The mailboxes of all mail programs, each once: a folder of a program that keeps an
/// index counts as that program's, even if it lies below another store.
std::vector<StoredMailbox> mailboxesOf(const MailPlaces &places);

} // namespace brellin
