#pragma once

#include "Base/Result.h"
#include "System/MailRecords.h"

#include <QByteArray>

#include <vector>

namespace brellin {

/// Reads the header of a message; `bytes` may end with it. Fields with defects are read as far as possible. Fails for
/// what is no message.
Result<MailHead> readMailHead(const QByteArray &bytes);

} // namespace brellin
