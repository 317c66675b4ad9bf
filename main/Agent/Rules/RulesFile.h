#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"

#include <QByteArray>

#include <vector>

namespace brellin {

/// Parses rules that were exported or written by hand. Anything but a list of rules, a wrong type or an unknown word,
/// or a missing field without which a rule would take more than was meant, fails the whole file, with a German sentence
/// that names the rule and the field.
Result<std::vector<CleanupRule>> readRules(const QByteArray &json);

/// The rules as indented JSON, for people to read.
QByteArray writeRules(const std::vector<CleanupRule> &rules);

/// The same for protection profiles. Also refuses a profile without an absolute root path, or with an entry that would
/// protect nothing. Reads the disk to see whether blanks at the ends of an entry belong to a name.
Result<std::vector<FolderProfile>> readProfiles(const QByteArray &json);
QByteArray writeProfiles(const std::vector<FolderProfile> &profiles);

} // namespace brellin
