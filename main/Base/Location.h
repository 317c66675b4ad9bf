#pragma once

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

namespace brellin {

/// A place in the file system. File names are bytes; they become text only to be shown or matched.
using Location = std::filesystem::path;

/// Absolute, without ".", ".." and a closing "/", decided from the text alone (links are not looked at).
Location standardised(const Location &location);
/// Whether a path is in that form already.
bool isStandardised(std::string_view path);

/// True when `location` is `folder` or lies below it. Both standardised.
bool isAtOrBelow(const Location &location, const Location &folder);
bool isAtOrBelow(std::string_view location, std::string_view folder);

/// The bytes as text for reading; bytes that are no UTF-8 show as "�".
QString shown(const Location &location);
QString shown(std::string_view bytes);
/// The last component for reading ("/" for the root).
QString shownName(const Location &location);

/// A path as it stands in stored or printed JSON: its text where it is valid UTF-8 (and does not begin with
/// "file://"), else a "file://" URL with percent-encoded bytes. `locationFromText` reads both.
QString textOf(const Location &location);
Location locationFromText(const QString &text);

/// Text in the form in which names are compared: composed (NFC) and case-folded ("ÜBERWEISUNG" = "Überweisung",
/// "STRASSE" = "Straße").
QString folded(const QString &text);

/// The part of a name behind its last dot, without the dot; empty for ".profile", "name." and where a blank follows
/// ("Herr Dr. Maier").
std::string_view extensionOf(std::string_view name);
/// The name without that extension and its dot.
std::string_view stemOf(std::string_view name);
/// The extension in lower case (ASCII letters; extensions beyond ASCII are compared as they are).
std::string lowerExtensionOf(std::string_view name);

} // namespace brellin
