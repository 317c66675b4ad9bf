#pragma once

#include "Base/Location.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// The groups of a key file (desktop entries and the like) with raw keys and values; of duplicate keys the first.
using KeyFile = std::map<QByteArray, std::map<QByteArray, QByteArray>>;
KeyFile readKeyFile(const Location &file);

/// The items of a list value ("a;b;").
std::vector<QString> keyFileList(const QByteArray &value);

/// An application's desktop entry.
struct DesktopEntry {
    Location file;
    QString identifier; ///< without ".desktop"
    QString name;
    QString icon;
    QString command; ///< with field codes for the files to open
    std::string tryProgram;
    std::vector<QString> types;
    bool inTerminal = false;
    bool hidden = false; ///< counts as not installed
    bool offered = true; ///< belongs into menus

    /// nullopt if the file does not describe an application.
    static std::optional<DesktopEntry> read(const Location &file, const QString &identifier);

    /// Whether the command has a place for files.
    bool takesFiles() const;
    /// The command lines to open these entries: one, or one per entry if the program takes a single file. Empty if the
    /// command is invalid.
    std::vector<std::vector<std::string>> commandLines(const std::vector<Location> &entries) const;
};

} // namespace brellin
