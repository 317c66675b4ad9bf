#pragma once

#include "Base/Location.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace brellin {

/// Files on the clipboard, and whether pasting moves them.
struct ClipboardFiles {
    enum class Purpose { Copy, Cut };
    Purpose purpose = Purpose::Copy;
    std::vector<Location> entries;

    bool operator==(const ClipboardFiles &) const = default;
};

/// MIME types of files on the clipboard.
namespace clipboardForms {
constexpr const char *uriList = "text/uri-list";
constexpr const char *gnome = "x-special/gnome-copied-files";
constexpr const char *kde = "application/x-kde-cutselection";
constexpr const char *text = "text/plain";
} // namespace clipboardForms

/// The files as MIME type and data, in every format that common file managers read.
std::vector<std::pair<QByteArray, QByteArray>> clipboardFormsOf(const ClipboardFiles &files);

/// Parses local files from the clipboard. `form` returns the data of a MIME type, empty if missing. None if there are
/// no files.
std::optional<ClipboardFiles> clipboardFilesFrom(const std::function<QByteArray(const char *form)> &form);

/// Converts a path to a "file://" URL with percent-encoded bytes, and back; none if the URL is not local.
QByteArray fileUrl(const Location &entry);
std::optional<Location> locationOfFileUrl(const QByteArray &url);

/// The paths as text, one per line.
QString pathText(const std::vector<Location> &entries);

} // namespace brellin
