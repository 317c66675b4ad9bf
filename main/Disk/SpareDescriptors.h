#pragma once

#include "Base/Descriptor.h"
#include "Base/Result.h"

#include <vector>

namespace brellin {

/// A few reserved descriptors: release them to clean up when an operation failed because descriptors ran out.
class SpareDescriptors {
public:
    static Result<SpareDescriptors> take();
    void release() { m_kept.clear(); }

private:
    std::vector<Descriptor> m_kept;
};

} // namespace brellin
