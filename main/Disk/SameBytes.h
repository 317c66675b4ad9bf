#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <functional>

#include <sys/types.h>

namespace brellin {

/// Whether two open files hold the same first `size` bytes. False where one of them ends before that; a failure where one
/// cannot be read. `beat` is called after every piece and may end the comparison with its failure.
Result<bool> sameBytes(int a, int b, off_t size, const std::function<Result<void>()> &beat = {});

/// Whether two symbolic links hold the same text. False where one of them cannot be read.
bool sameLinkTarget(NameIn a, NameIn b);

} // namespace brellin
