#pragma once

#include <QByteArray>
#include <QString>

namespace brellin {

/// The text of a mimeapps.list in which this application is the first for a MIME type, the previous ones following.
/// Everything else stays as it is, comments and unknown groups as well.
QByteArray withDefaultApplication(const QByteArray &list, const QString &mimeType, const QString &identifier);

} // namespace brellin
