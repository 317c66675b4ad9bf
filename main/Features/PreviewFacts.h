#pragma once

#include "Base/Instant.h"
#include "Disk/FileAttributes.h"
#include "Features/PreviewContent.h"

#include <QJsonObject>

namespace brellin {

/// "0:07", "12:30", "1:02:05"
QString lengthText(double seconds);

/// Name, kind, summary and the facts Erstellt, Geändert and Ort, from the entry's attributes.
PreviewContent previewBasics(const Location &entry, const FileAttributes &attributes, Instant now);

/// Inserts the decoder's metadata ("angaben") before those facts: Abmessungen, Aufgenommen, Kamera, Dauer. The number
/// of pages goes into the summary.
void addMediaFacts(PreviewContent &content, const QJsonObject &media);

} // namespace brellin
