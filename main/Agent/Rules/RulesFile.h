#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"

#include <QByteArray>

#include <vector>

namespace brellin {

/// Reads rules that somebody wrote or exported. A text that is no list of rules, has a wrong type or an unknown word is
/// refused as a whole with one German sentence that names the rule and the field.
Result<std::vector<CleanupRule>> readRules(const QByteArray &json);

/// The rules as a file for people: indented JSON.
QByteArray writeRules(const std::vector<CleanupRule> &rules);

/// The same for protection profiles; one without an absolute path is refused, as is one with an entry
/// that would protect nothing. Looks on the disk whether a blank at the edge of an entry is part of a name.
Result<std::vector<FolderProfile>> readProfiles(const QByteArray &json);
QByteArray writeProfiles(const std::vector<FolderProfile> &profiles);

} // namespace brellin
