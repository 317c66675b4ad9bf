#pragma once

#include "Base/Json.h"
#include "Guard/FolderProfile.h"
#include "System/StoredList.h"

/// The stored form of profiles. The keys must not change: earlier and later versions read them.
namespace brellin {

template <>
struct JsonTable<ProtectedEntry> {
    static constexpr std::tuple fields{field("id", &ProtectedEntry::id), field("path", &ProtectedEntry::path),
                                       field("reason", &ProtectedEntry::reason)};
};

template <>
struct JsonTable<FolderProfile> {
    static constexpr std::tuple fields{
        field("id", &FolderProfile::id),
        field("rootPath", &FolderProfile::rootPath),
        field("name", &FolderProfile::name),
        field("protected", &FolderProfile::protectedEntries),
        field("tidyAllowed", &FolderProfile::tidyAllowed),
        field("groups", &FolderProfile::groups),
        field("archiveAfterDays", &FolderProfile::archiveAfterDays),
        field("suggestDeleteUnusedVideosDays", &FolderProfile::suggestDeleteUnusedVideosDays)};
};

template <>
inline constexpr bool recordsStandAlone<FolderProfile> = false;
/// A profile without its entries or an absolute root path would protect nothing, so it counts as damaged.
template <>
struct DecisiveKeys<FolderProfile> {
    static JsonResult<void> check(const QJsonValue &profile);
};

} // namespace brellin
