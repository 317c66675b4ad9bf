#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <cstdint>
#include <functional>

namespace brellin {

/// A message in an mbox file.
struct MboxMessage {
    std::int64_t offset = 0; ///< of its header, behind the "From " line
    std::int64_t end = 0;    ///< behind its last byte
    QByteArray separator;    ///< the "From " line, which may contain a date
    QByteArray header;       ///< with its closing empty line; at most 256 KB
    bool deleted = false;    ///< Thunderbird keeps deleted messages until it compacts the file

    bool operator==(const MboxMessage &) const = default;
};

/// Calls `visit` for each message of an mbox file, in order, until it returns false. The file is only read, never
/// locked. A "From " line separates messages only behind an empty line and before a header line: text may begin so too.
/// Memory does not grow with the file. Fails if the file cannot be read, and with `Failure::cancelled`.
Result<void> readMbox(const Location &file, const std::function<bool(const MboxMessage &)> &visit,
                      const JobControl *control = nullptr);

} // namespace brellin
