#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// The SHA-256 of a file's content as 64 lower-case hexadecimal digits, read in pieces of 1 MiB without touching the
/// file's access time (where the system lets us). A link is not followed, only a regular file has a digest. `control`
/// can cancel between two pieces; with `DigestProgress::CountBytes` its `done` counter grows by the bytes read.
enum class DigestProgress { None, CountBytes };
Result<QByteArray> sha256(const Location &file, JobControl *control = nullptr,
                          DigestProgress progress = DigestProgress::None);

/// The SHA-256 of a few bytes, in the same form.
QByteArray sha256OfBytes(const QByteArray &bytes);

} // namespace brellin
