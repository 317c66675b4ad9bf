#pragma once

#include "Base/Location.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace brellin {

/// Files on the clipboard, and whether they are to be moved by the next paste.
struct ClipboardFiles {
    enum class Purpose { Copy, Cut };
    Purpose purpose = Purpose::Copy;
    std::vector<Location> entries;

    bool operator==(const ClipboardFiles &) const = default;
};

/// The desktop's names for what lies on the clipboard.
namespace clipboardForms {
constexpr const char *uriList = "text/uri-list";
constexpr const char *gnome = "x-special/gnome-copied-files";
constexpr const char *kde = "application/x-kde-cutselection";
constexpr const char *text = "text/plain";
} // namespace clipboardForms

/// Every form that other file managers read, by name, with its bytes.
std::vector<std::pair<QByteArray, QByteArray>> clipboardFormsOf(const ClipboardFiles &files);

/// What lies on the clipboard as far as it is files of this machine. `form` gives the bytes of a form, empty where it is not
/// there. Nothing where there are no files.
std::optional<ClipboardFiles> clipboardFilesFrom(const std::function<QByteArray(const char *form)> &form);

/// A path as "file://" URL with its bytes percent-encoded, and the way back (local ones only).
QByteArray fileUrl(const Location &entry);
std::optional<Location> locationOfFileUrl(const QByteArray &url);

/// The paths as text, one a line.
QString pathText(const std::vector<Location> &entries);

} // namespace brellin
