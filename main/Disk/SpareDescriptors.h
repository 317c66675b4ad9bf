#pragma once

#include "Base/Descriptor.h"
#include "Base/Result.h"

#include <vector>

namespace brellin {

/// A few descriptors put aside before something is made, so that it can be taken away again where the work on it fails for
/// want of them.
class SpareDescriptors {
public:
    static Result<SpareDescriptors> take();
    void release() { m_kept.clear(); }

private:
    std::vector<Descriptor> m_kept;
};

} // namespace brellin
