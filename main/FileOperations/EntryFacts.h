#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Disk/FileAttributes.h"
#include "Features/PreviewContent.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace brellin {

/// What the attributes of one entry, or of several together, tell a reader.
struct EntryFacts {
    QString name; ///< „Brief.pdf“, „3 Elemente“
    QString kind; ///< „PDF-Dokument“, „2 Ordner, 1 Datei“
    std::vector<PreviewFact> rows;
    QStringList tags;                       ///< that all of them carry
    QStringList someTags;                   ///< that some of them carry
    bool taggable = true;                   ///< links carry no tags
    bool folder = false;                    ///< a single one
    std::optional<std::int64_t> digestible; ///< the size where it is one file with a content
    QStringList failures;                   ///< „Brief.pdf: …“

    bool operator==(const EntryFacts &) const = default;
};

/// Reads them. A link stands for itself. Blocking.
EntryFacts readEntryFacts(const std::vector<Location> &entries, const JobControl &control);

/// What one group of permission bits (0 … 7) allows: „lesen, schreiben“, „kein Zugriff“. To go through a folder is „öffnen“.
QString permissionText(std::uint32_t bits, EntryKind kind);

/// „-rw-r--r-- (644)“
QString modeText(std::uint32_t mode, EntryKind kind);

} // namespace brellin
