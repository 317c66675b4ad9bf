#pragma once

#include "Base/Result.h"
#include "MailScanner/ReceiptFacts.h"

#include <QByteArray>

namespace brellin {

/// Most bytes of an invoice's XML that are read.
inline constexpr qsizetype mostInvoiceBytes = 5'000'000;

/// Whether an embedded file of this name is an electronic invoice ("factur-x.xml", whatever its case).
bool isInvoiceXml(const QString &name);

/// Seller, gross total and day of an electronic invoice: UN/CEFACT's CII, as ZUGFeRD 1 and 2 and Factur-X embed it, or
/// UBL. The total of a credit note is negative. Fails for any other XML, for one with a document type (none of these has
/// one, and entities are declared there) and for more than `mostInvoiceBytes`.
Result<ReceiptFacts> readElectronicInvoice(const QByteArray &xml);

} // namespace brellin
