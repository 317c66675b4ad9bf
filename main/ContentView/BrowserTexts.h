#pragma once

#include "Base/Location.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace brellin {

/// Selects the wording of texts that name the system's own programs or settings.
enum class BrowserTextSystem { Mac, Linux };
/// The system this program is built for.
BrowserTextSystem ownBrowserTextSystem();

/// "12 Elemente   |   2 ausgewählt  3 MB   |   1,5 GB frei"; unknown or empty parts are left out.
QString statusLine(std::size_t count, const QString &selected, std::optional<std::int64_t> freeSpace);

/// Text for a folder that cannot be read; `error` is the system's message.
QString unreadableFolderText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// Text for a Trash that cannot be read.
QString unreadableTrashText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// "„/kein/Ordner“ wurde nicht gefunden."
QString notFoundText(const Location &folder);
/// Text for a mount that does not respond.
QString notAnsweringText(const Location &location);

} // namespace brellin
