#include "Guard/RulePath.h"

namespace brellin {

std::optional<Location> rulePath(const QString &text, const Location &home)
{
    if (text.contains(QChar(0)))
        return std::nullopt;
    Location path = locationFromText(text);
    if (const std::string &bytes = path.native(); bytes == "~" || bytes.starts_with("~/"))
        path = home.native() + bytes.substr(1);
    if (!path.is_absolute() || path.native().find('\0') != std::string::npos)
        return std::nullopt;
    return standardised(path);
}

} // namespace brellin
