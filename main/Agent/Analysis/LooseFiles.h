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

/// Chooses one of the groups for a file by its content; nothing where none fits, or nobody can be asked.
using GroupChooser =
    std::function<std::optional<QString>(const Location &file, const QStringList &groups, const JobControl &control)>;

/// A file that lies about and the place in a collecting folder where it would go.
struct LooseFile {
    Location file;
    FileState state;
    Location destination;
    QString reason;
};

struct LooseFiles {
    std::vector<LooseFile> files;
    int leftForScripts = 0; ///< stay because a script in the folder names them
};

/// The group that a file of this category goes to by default.
QString groupForCategory(const QString &category);

/// The files directly in the analysed folder that can be gathered into its collecting folders. What is `taken`, is part of
/// a project, belongs to a neighbour (a saved page and its folder, a picture and its notes), is still being written, or was
/// put there by an earlier run stays. `choose` may be empty.
LooseFiles looseFiles(const AnalysisScope &scope, const std::set<Location> &taken, const GroupChooser &choose,
                      JobControl &control);

} // namespace brellin
