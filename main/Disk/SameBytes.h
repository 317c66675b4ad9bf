#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <functional>

#include <sys/types.h>

namespace brellin {

/// Whether the first `size` bytes of two open files are equal; false if one is shorter, a failure if one cannot be
/// read. `beat` is called after each piece; its failure ends the comparison.
Result<bool> sameBytes(int a, int b, off_t size, const std::function<Result<void>()> &beat = {});

/// Whether two symlinks have the same text; false if one cannot be read.
bool sameLinkTarget(NameIn a, NameIn b);

} // namespace brellin
