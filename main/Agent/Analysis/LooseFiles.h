#pragma once

#include "Agent/Analysis/AnalysisReasons.h"
#include "Agent/Analysis/AnalysisScope.h"
#include "Base/JobControl.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// Chooses one of the groups for a file by its content; nullopt if none fits or no model is available.
using GroupChooser =
    std::function<std::optional<QString>(const Location &file, const QStringList &groups, const JobControl &control)>;

/// A loose file and its destination in a collecting folder.
struct LooseFile {
    Location file;
    FileState state;
    Location destination;
    QString reason;
};

struct LooseFiles {
    std::vector<LooseFile> files;
    int leftForScripts = 0; ///< these stay because a script in the folder names them
};

/// The default group for files of this category.
QString groupForCategory(const QString &category);

/// The files directly in the analysed folder that can be moved to its collecting folders. Excludes files that are
/// `taken`, belong to a project or to a neighbour (a saved page and its folder, a picture and its sidecar), are
/// unfinished downloads, or were put there by an earlier run. `choose` may be empty.
LooseFiles looseFiles(const AnalysisScope &scope, const std::set<Location> &taken, const GroupChooser &choose,
                      JobControl &control);

} // namespace brellin
