#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"
#include "Features/PreviewContent.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace brellin {

/// Attributes of one entry, or of several together, for display.
struct EntryFacts {
    QString name; ///< „Brief.pdf“ or „3 Elemente“
    QString kind; ///< „PDF-Dokument“ or „2 Ordner, 1 Datei“
    std::vector<PreviewFact> rows;
    QStringList tags;                       ///< on all entries
    QStringList someTags;                   ///< on some entries
    bool taggable = true;                   ///< false if a link is among them, which cannot have tags
    bool onlyLinks = false;                 ///< which have no rights of their own
    bool folder = false;                    ///< a single folder
    std::optional<std::int64_t> digestible; ///< size of a single regular file
    EntryFailures failures;                 ///< entries that could not be read

    bool operator==(const EntryFacts &) const = default;
};

/// Reads the facts; symlinks are not followed. Returns what was read so far if cancelled. Blocking.
EntryFacts readEntryFacts(const std::vector<Location> &entries, const JobControl &control);

/// Text of three permission bits (0 to 7): „lesen, schreiben“, „kein Zugriff“. The execute bit of a folder is „öffnen“.
QString permissionText(std::uint32_t bits, EntryKind kind);

/// The mode as „-rw-r--r-- (644)“.
QString modeText(std::uint32_t mode, EntryKind kind);

} // namespace brellin
