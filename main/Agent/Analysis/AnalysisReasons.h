#pragma once

#include "Agent/Analysis/FolderUsage.h"
#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The reasons that an analysis gives for its proposals, each one true sentence for a person.

/// An old backup, an archive or something temporary. `modified` stands in for the newest file where there is none.
QString backupReason(const FolderUsage &usage, Instant modified);
QString neverOpenedReason(const FolderUsage &usage, int days);
QString neverOpenedReason(const FileAttributes &file, int days);
/// A folder that has not been used for `days` days, where `limit` are allowed.
QString unusedReason(const Location &folder, int days, int limit);

/// Why a loose file goes to the group it goes to.
enum class GroupChoice { ByCategory, ByBackupName, ByModel };
enum class NameChange { None, Cleaned };
QString sortingReason(const Location &file, const QString &group, GroupChoice choice, NameChange change);

} // namespace brellin
