#pragma once

#include "Base/Location.h"

#include <QDate>
#include <QString>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// What the sheet for renaming several entries asks for.
struct BatchRenameFields {
    enum class Mode {
        Number,  ///< base, separator and a number
        Replace, ///< one text by another
        Add,     ///< something in front of and behind the stem
        Date     ///< the day in front of the name
    };
    Mode mode = Mode::Number;
    QString base;
    int startNumber = 1;
    int digits = 2; ///< at least so many, filled up with zeros; 1 and less: the plain number
    QString separator = QStringLiteral(" – ");
    QString find;
    QString replaceWith;
    QString prefix;
    QString suffix;

    bool operator==(const BatchRenameFields &) const = default;
};

/// "Name + Nummer", "Ersetzen", "Ergänzen", "Datum davor".
QString title(BatchRenameFields::Mode mode);

/// One entry that is to be renamed, in the order shown.
struct BatchRenameEntry {
    Location location;
    QDate date; ///< the day of the photo, else of the file; needed by the date mode alone

    bool operator==(const BatchRenameEntry &) const = default;
};

/// The names in one folder, and whether its volume tells upper from lower case.
struct FolderNames {
    enum class Case { Distinguished, Ignored };
    std::set<std::string> names;
    Case letterCase = Case::Distinguished;

    bool operator==(const FolderNames &) const = default;
};
using NamesInFolders = std::map<Location, FolderNames>;

/// One line of the preview.
struct BatchRenameRow {
    enum class Conflict {
        None,
        InvalidName, ///< empty, or with "/" or ":"
        TooLong,     ///< longer than a volume holds
        Equal,       ///< another entry of the batch would be called the same
        Taken,       ///< an entry outside of the batch is called so
        Twice,       ///< the same entry is in the batch before
        Inside       ///< lies in a folder that is renamed in the same batch
    };
    Location from;
    Location to;
    std::string name; ///< the new one, as bytes
    Conflict conflict = Conflict::None;

    bool changes() const { return from.native() != to.native(); }
    bool operator==(const BatchRenameRow &) const = default;
};

struct BatchRenamePlan {
    std::vector<BatchRenameRow> rows; ///< as many as entries, in their order
    std::optional<QString> error;     ///< the first check that fails; nothing may be renamed then

    bool operator==(const BatchRenamePlan &) const = default;
};

/// The name that an entry gets, `index` being its place in the batch.
std::string newName(const BatchRenameEntry &entry, int index, const BatchRenameFields &fields);

/// What renaming would do. Names stay the bytes they are but for what the fields change.
BatchRenamePlan planBatchRename(const std::vector<BatchRenameEntry> &entries, const BatchRenameFields &fields,
                                const NamesInFolders &folders);

} // namespace brellin
