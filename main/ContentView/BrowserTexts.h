#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The systems whose users read the texts below.
enum class BrowserTextSystem { Mac, Linux };
/// The one this program is built for.
BrowserTextSystem ownBrowserTextSystem();

/// What stands in place of a folder that cannot be read; `error` is the system's description.
QString unreadableFolderText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// The same for the Trash.
QString unreadableTrashText(const QString &error, BrowserTextSystem system = ownBrowserTextSystem());
/// „/kein/Ordner“ wurde nicht gefunden.
QString notFoundText(const Location &folder);
/// A network mount that does not answer.
QString notAnsweringText(const Location &location);

} // namespace brellin
