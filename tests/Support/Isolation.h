#pragma once

#include "Support/TempTree.h"

namespace brellin::test {

/// Redirects HOME and all XDG folders into a temporary folder of this test process, so that tests never see the real
/// account. Create it before Qt reads them.
class Isolation {
public:
    Isolation();

private:
    TempTree m_home;
};

} // namespace brellin::test
