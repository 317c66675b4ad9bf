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

/// The groups of a file of the desktop's key files, keys and values as they stand; of a key that is there twice the first.
using KeyFile = std::map<QByteArray, std::map<QByteArray, QByteArray>>;
KeyFile readKeyFile(const Location &file);

/// The parts of a value that is a list ("a;b;").
std::vector<QString> keyFileList(const QByteArray &value);

/// An application's starter file.
struct DesktopEntry {
    Location file;
    QString identifier; ///< without ".desktop"
    QString name;
    QString icon;
    QString command; ///< with the field codes for what is to be opened
    std::string tryProgram;
    std::vector<QString> types;
    bool inTerminal = false;
    bool hidden = false; ///< counts as not installed

    /// Nothing for what is no application.
    static std::optional<DesktopEntry> read(const Location &file, const QString &identifier);

    /// The command lines that open these entries: one, or one for each where the program takes a single one. Empty where the
    /// command is not to be understood.
    std::vector<std::vector<std::string>> commandLines(const std::vector<Location> &entries) const;
};

} // namespace brellin
