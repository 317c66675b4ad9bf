#pragma once

#include "Base/Location.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace brellin {

/// The systems whose users read the texts below.
enum class BrowserTextSystem { Mac, Linux };
/// The one this program is built for.
BrowserTextSystem ownBrowserTextSystem();

/// The status line: "12 Elemente   |   2 ausgewählt  3 MB   |   1,5 GB frei"; what is not known, or empty, is left out.
QString statusLine(std::size_t count, const QString &selected, std::optional<std::int64_t> freeSpace);

/// What stands in place of a folder that cannot be read; `error` is the system's description.
QString unreadableFolderText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// The same for the Trash.
QString unreadableTrashText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// „/kein/Ordner“ wurde nicht gefunden.
QString notFoundText(const Location &folder);
/// A network mount that does not answer.
QString notAnsweringText(const Location &location);

} // namespace brellin
