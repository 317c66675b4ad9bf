#pragma once

#include <QStringList>

namespace brellin {

/// The attachments of a mail that are receipts: its PDFs, or else its pictures, without terms and conditions, logos and
/// pictures of the text. In the mail's order; empty if the mail is no receipt.
QStringList receiptFiles(const QStringList &names);

} // namespace brellin
