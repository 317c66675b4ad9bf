#include "ContentView/BrowserTexts.h"

namespace brellin {

BrowserTextSystem ownBrowserTextSystem()
{
    return BrowserTextSystem::Linux;
}

} // namespace brellin
