#pragma once

#include "Support/TempTree.h"

namespace brellin::test {

/// Leads home and every XDG folder into a folder of this test process, before Qt looks at them: a test never sees the
/// account it runs in. Goes with the process.
class Isolation {
public:
    Isolation();

private:
    TempTree m_home;
};

} // namespace brellin::test
