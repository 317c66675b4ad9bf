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

/// The input fields of a batch rename.
struct BatchRenameFields {
    enum class Mode {
        Number,  ///< base, separator and number
        Replace, ///< replaces a text
        Add,     ///< adds a prefix and a suffix to the stem
        Date     ///< adds the date in front of the name
    };
    Mode mode = Mode::Number;
    QString base;
    int startNumber = 1;
    int digits = 2; ///< minimum number of digits, padded with zeros
    QString separator = QStringLiteral(" – ");
    QString find;
    QString replaceWith;
    QString prefix;
    QString suffix;

    bool operator==(const BatchRenameFields &) const = default;
};

/// Title of the mode: "Name + Nummer", "Ersetzen", "Ergänzen", "Datum davor".
QString title(BatchRenameFields::Mode mode);

/// One entry to be renamed, in display order.
struct BatchRenameEntry {
    Location location;
    QDate date; ///< when the photo was taken or the file created; only used in date mode

    bool operator==(const BatchRenameEntry &) const = default;
};

/// The names in a folder, and whether its volume is case-sensitive.
struct FolderNames {
    enum class Case { Distinguished, Ignored };
    std::set<std::string> names;
    Case letterCase = Case::Distinguished;

    bool operator==(const FolderNames &) const = default;
};
using NamesInFolders = std::map<Location, FolderNames>;

/// One row of the preview.
struct BatchRenameRow {
    enum class Conflict {
        None,
        InvalidName, ///< empty, "." or "..", or contains "/", ":" or NUL
        TooLong,     ///< longer than 255 bytes
        Equal,       ///< another entry of the batch would get the same name
        Taken,       ///< an entry outside the batch has this name
        Twice,       ///< the entry is in the batch twice
        Inside       ///< lies in a folder that is also in the batch
    };
    Location from;
    Location to;
    std::string name; ///< new name as bytes
    Conflict conflict = Conflict::None;

    bool changes() const { return from.native() != to.native(); }
    bool operator==(const BatchRenameRow &) const = default;
};

struct BatchRenamePlan {
    std::vector<BatchRenameRow> rows; ///< one per entry, in their order
    std::optional<QString> error;     ///< text of the first conflict; nothing may be renamed then

    bool operator==(const BatchRenamePlan &) const = default;
};

/// The new name of an entry; `index` is its position in the batch.
std::string newName(const BatchRenameEntry &entry, int index, const BatchRenameFields &fields);

/// Plans the batch without touching the disk. Bytes of names that the fields do not change are kept.
BatchRenamePlan planBatchRename(const std::vector<BatchRenameEntry> &entries, const BatchRenameFields &fields,
                                const NamesInFolders &folders);

} // namespace brellin
