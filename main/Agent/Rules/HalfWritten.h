#pragma once

#include <string>
#include <string_view>

namespace brellin {

/// Whether a lower-case extension is that of an unfinished download.
bool isHalfWrittenExtension(std::string_view extension);

/// The name that a browser reserves with an empty file while it downloads under a name with a random part:
/// "Rechnung.pdf" for "Rechnung.Zy8dR0Ap.pdf.part". Empty for names of any other form.
std::string reservedNameOf(std::string_view halfWritten);

} // namespace brellin
