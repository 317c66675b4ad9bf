#pragma once

#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace brellin {

/// Something in a project folder that the agent never moves, renames or deletes.
struct ProtectedEntry {
    QUuid id = QUuid::createUuid();
    QString path; ///< relative to the profile's root
    QString reason;

    bool operator==(const ProtectedEntry &) const = default;
};

/// The protection of one project folder and how its rest may be tidied.
struct FolderProfile {
    QUuid id = QUuid::createUuid();
    QString rootPath; ///< absolute
    QString name;
    std::vector<ProtectedEntry> protectedEntries; ///< stored as "protected"
    bool tidyAllowed = false;
    std::vector<QString> groups{QStringLiteral("Unterlagen"), QStringLiteral("Medien"), QStringLiteral("Social Media"),
                                QStringLiteral("Archiv")}; ///< names of the collecting folders
    int archiveAfterDays = 30;
    int suggestDeleteUnusedVideosDays = 30;

    bool operator==(const FolderProfile &) const = default;

    Location root() const;
    /// The path of a location below the root, relative to it; nothing when it lies outside or is the root itself.
    std::optional<Location> relative(const Location &location) const;
    /// Whether a location is a protected entry or lies below one. Names are compared composed (NFC).
    bool isProtected(const Location &location) const;
};

} // namespace brellin
