#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "MailScanner/MailRule.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace brellin {

/// A mail found to be a receipt.
struct MailHit {
    QUuid id = QUuid::createUuid(); ///< changes with each scan; `messageID` does not
    QString messageID;
    QString subject;
    QString sender;          ///< as in the mail: usually a name followed by an address in angle brackets
    Instant date{};          ///< received
    QStringList attachments; ///< names of those chosen as receipt files
    MailRule rule;           ///< the rule that matched
    QString account;
    MailArea area = MailArea::Privat;
    std::optional<Location> customFolder; ///< chosen for this receipt only

    bool operator==(const MailHit &) const = default;
};

} // namespace brellin
