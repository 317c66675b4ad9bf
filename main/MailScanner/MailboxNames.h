#pragma once

#include <QByteArray>
#include <QString>

namespace brellin {

/// Names of mailboxes on disk: IMAP's modified UTF-7 ("Entw&APw-rfe"), where other programs store UTF-8. What is not valid in
/// either encoding is shown as it is.
QString mailboxNameFrom(const QByteArray &bytes);
/// The name in modified UTF-7, as Maildir++ stores it.
QByteArray inModifiedUtf7(const QString &name);

} // namespace brellin
