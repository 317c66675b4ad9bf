#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

#include <QByteArray>

#include <optional>

namespace brellin {

/// A folder of this many files or more has no fingerprint.
inline constexpr std::int64_t fingerprintFiles = 5'000;

/// A digest of a folder's listing: the relative paths and sizes of all regular files below it, as hexadecimal SHA-256.
/// Equal ones make two folders candidates for having the same content, no more. Nothing for a folder without files, with
/// very many, and for one that cannot be read whole.
std::optional<QByteArray> fingerprint(const Location &folder, const JobControl *control = nullptr);

} // namespace brellin
