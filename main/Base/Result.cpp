#include "Base/Result.h"

#include "Base/SystemErrorText.h"

#include <cerrno>

namespace brellin {

Failure Failure::system(int number)
{
    const std::error_code code(number, std::generic_category());
    return {systemErrorText(code), code};
}

Failure Failure::lastSystem()
{
    return system(errno);
}

Failure Failure::cancelled()
{
    return {QStringLiteral("Abgebrochen."), std::make_error_code(std::errc::operation_canceled)};
}

} // namespace brellin
