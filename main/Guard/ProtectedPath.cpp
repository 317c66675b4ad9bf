#include "Guard/ProtectedPath.h"

namespace brellin {

Result<QString> protectedPath(const FolderProfile &profile, const QString &written, EdgeBlanks blanks)
{
    if (blanks == EdgeBlanks::Typed && written != written.trimmed())
        return failure(
            QStringLiteral("„%1“ beginnt oder endet mit einem Leerzeichen und schützt so nichts.").arg(written));
    const Location entry = standardised(profile.root() / locationFromText(written));
    if (entry == profile.root())
        return failure(QStringLiteral("„%1“ ist kein Eintrag in diesem Projekt.").arg(written));
    const std::optional<Location> relative = profile.relative(entry);
    if (!relative)
        return failure(QStringLiteral("„%1“ liegt nicht in diesem Projekt.").arg(written));
    return textOf(*relative);
}

} // namespace brellin
