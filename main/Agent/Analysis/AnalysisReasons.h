#pragma once

#include "Agent/Analysis/FolderUsage.h"
#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The sentences that explain the proposals of an analysis.

/// For an old backup, an archive or temporary files. `modified` is used if the folder has no newest file.
QString backupReason(const FolderUsage &usage, Instant modified);
QString neverOpenedReason(const FolderUsage &usage, int days);
QString neverOpenedReason(const FileAttributes &file, int days);
/// For a folder that has been unused for `days` days, with a limit of `limit`.
QString unusedReason(const Location &folder, int days, int limit);

/// How the group of a loose file was chosen.
enum class GroupChoice { ByCategory, ByBackupName, ByModel };
enum class NameChange { None, Cleaned };
QString sortingReason(const Location &file, const QString &group, GroupChoice choice, NameChange change);

} // namespace brellin
