#pragma once

#include "MailScanner/MailHit.h"
#include "MailScanner/ReceiptFacts.h"

namespace brellin {

/// A short name of the sender: its display part without quotes; for a bare address the main word of its domain
/// ("rechnung@stadtwerke.co.uk" is "Stadtwerke").
QString senderName(const QString &sender);

/// The day under which a receipt is filed: its own, or that of the mail, in local time.
QDate receiptDay(const MailHit &hit, const ReceiptFacts &facts);

/// The file name of a receipt without extension: day, company and amount; if neither of these is known, day, sender and
/// the subject's first 40 characters.
QString receiptName(const MailHit &hit, const ReceiptFacts &facts);

} // namespace brellin
