#pragma once

#include <string>
#include <string_view>

namespace brellin {

/// Whether a lower-case extension marks a download that is still being written.
bool isHalfWrittenExtension(std::string_view extension);

/// The name that a browser keeps with an empty file while it downloads into a file with a made-up part in its name:
/// "Rechnung.pdf" for "Rechnung.Zy8dR0Ap.pdf.part". Empty where the name is not of that form.
std::string reservedNameOf(std::string_view halfWritten);

} // namespace brellin
