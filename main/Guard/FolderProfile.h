#pragma once

#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace brellin {

/// An entry of a project folder that the agent never moves, renames or deletes.
struct ProtectedEntry {
    QUuid id = QUuid::createUuid();
    QString path; ///< relative to the profile's root
    QString reason;

    bool operator==(const ProtectedEntry &) const = default;
};

/// Protects one project folder and says how the rest of it may be tidied.
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
    /// The path relative to the root; nullopt for the root itself and for anything outside it.
    std::optional<Location> relative(const Location &location) const;
    /// Whether a location is a protected entry or lies below one. Compares names in NFC.
    bool isProtected(const Location &location) const;
};

} // namespace brellin
