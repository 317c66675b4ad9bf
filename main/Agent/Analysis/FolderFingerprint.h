#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

#include <QByteArray>

#include <optional>

namespace brellin {

/// Folders with this many files or more have no fingerprint.
inline constexpr std::int64_t fingerprintFiles = 5'000;

/// SHA-256 (hexadecimal) of a folder's listing: relative paths and sizes of all regular files below it. Equal
/// fingerprints only make folders candidates for a comparison. nullopt for a folder without files, with too many, or
/// that cannot be read completely.
std::optional<QByteArray> fingerprint(const Location &folder, const JobControl *control = nullptr);

} // namespace brellin
