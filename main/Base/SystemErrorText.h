#pragma once

#include <QString>

#include <system_error>

namespace brellin {

/// The German description of a system error; for rare numbers „Systemfehler 71 (Protocol error).“.
QString systemErrorText(const std::error_code &code);

} // namespace brellin
