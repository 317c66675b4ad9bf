#pragma once

#include "Base/Result.h"
#include "System/MailRecords.h"

#include <QByteArray>

#include <vector>

namespace brellin {

/// The attachments of a message and of those forwarded in it, at most five deep, in their order and each once. Whether
/// a part is one is decided by its type and name, whatever its disposition: pictures that the text shows are not,
/// encrypted parts and winmail.dat neither. Names are plain file names, different from each other; a PDF or picture
/// without name or extension gets one. Fails for what is no message.
Result<std::vector<MailFile>> readMailFiles(const QByteArray &bytes);

/// A file name from a message as a plain one: its last component, without control and direction characters and leading
/// dots, at most 255 bytes. Empty if nothing remains.
QString plainFileName(const QString &name);

} // namespace brellin
