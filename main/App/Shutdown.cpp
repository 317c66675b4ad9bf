#include "App/Shutdown.h"

#include "Base/OpenWork.h"

#include <cstdio>
#include <cstdlib>

namespace brellin {

int Shutdown::end(int exitCode, std::chrono::milliseconds patience)
{
    if (OpenWork::cancelAndWait(patience))
        return exitCode;
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

} // namespace brellin
