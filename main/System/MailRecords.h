#pragma once

#include "Base/Instant.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What `brellin-bild` reads from messages, which come from strangers.
namespace brellin {

/// The header of a message.
struct MailHead {
    QString id; ///< the Message-ID without angle brackets; "sha256-…" of the header if it has none
    QString subject;
    QString sender;                  ///< "Name <address>"
    std::optional<Instant> received; ///< by the topmost Received field
    std::optional<Instant> dated;    ///< by the Date field

    bool operator==(const MailHead &) const = default;
};

/// An attachment.
struct MailFile {
    QString name;
    QByteArray content;

    bool operator==(const MailFile &) const = default;
};

} // namespace brellin
