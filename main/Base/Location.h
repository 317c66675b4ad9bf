#pragma once

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

namespace brellin {

/// A path. File names are bytes; they are converted to text only for display or comparison.
using Location = std::filesystem::path;

/// Absolute, without ".", ".." and trailing "/". Purely lexical: symlinks are not resolved.
Location standardised(const Location &location);
/// Whether a path already has that form.
bool isStandardised(std::string_view path);

/// Whether `location` is `folder` or lies below it. Both must be standardised.
bool isAtOrBelow(const Location &location, const Location &folder);
bool isAtOrBelow(std::string_view location, std::string_view folder);

/// The path as text for display; invalid UTF-8 shows as "�".
QString shown(const Location &location);
QString shown(std::string_view bytes);
/// The last component for display ("/" for the root).
QString shownName(const Location &location);

/// A path as text in stored or printed JSON: the path itself if it is valid UTF-8 (and does not start with "file://"),
/// otherwise a percent-encoded "file://" URL. `locationFromText` reads both.
QString textOf(const Location &location);
/// Whether that text is the path itself.
bool isItsOwnText(const Location &location);
Location locationFromText(const QString &text);

/// Text normalised for comparison: composed (NFC) and case-folded ("ÜBERWEISUNG" = "Überweisung", "STRASSE" =
/// "Straße").
QString folded(const QString &text);

/// The extension of a name, without the dot. Empty for ".profile", for "name." and if a blank follows the dot ("Herr
/// Dr. Maier").
std::string_view extensionOf(std::string_view name);
/// The name without that extension and its dot.
std::string_view stemOf(std::string_view name);
/// The extension in lower case (ASCII letters only).
std::string lowerExtensionOf(std::string_view name);

} // namespace brellin
