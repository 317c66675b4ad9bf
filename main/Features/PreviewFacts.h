#pragma once

#include "Base/Instant.h"
#include "Disk/FileAttributes.h"
#include "Features/PreviewContent.h"

#include <QJsonObject>

namespace brellin {

/// "0:07", "12:30", "1:02:05"
QString lengthText(double seconds);

/// What an entry is called and what its attributes tell: name, kind, summary and the rows Erstellt, Geändert, Ort.
PreviewContent previewBasics(const Location &entry, const FileAttributes &attributes, Instant now);

/// Puts what a medium says of itself (the decoder's "angaben") before those rows: Abmessungen, Aufgenommen, Kamera, Dauer;
/// the pages of a document go into the summary.
void addMediaFacts(PreviewContent &content, const QJsonObject &media);

} // namespace brellin
