#include "Agent/Model/ModelTexts.h"

namespace brellin {

TextSystem ownTextSystem()
{
    return TextSystem::Linux;
}

} // namespace brellin
