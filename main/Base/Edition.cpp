#include "Base/Edition.h"

namespace brellin {

#if BRELLIN_EDITION_TIDEWELL
const bool Edition::tidewell = true;
#else
const bool Edition::tidewell = false;
#endif

QString Edition::name()
{
    return tidewell ? QStringLiteral("Tidewell") : QStringLiteral("Brellin");
}

QString Edition::version()
{
    return QStringLiteral(BRELLIN_VERSION);
}

} // namespace brellin
