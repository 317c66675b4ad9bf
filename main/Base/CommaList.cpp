#include "Base/CommaList.h"

namespace brellin {

QStringList commaList(const QString &text)
{
    QStringList parts;
    for (const QStringView part : QStringView(text).split(u',')) {
        if (const QStringView trimmed = part.trimmed(); !trimmed.isEmpty())
            parts << trimmed.toString();
    }
    return parts;
}

} // namespace brellin
