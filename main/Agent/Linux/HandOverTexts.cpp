#include "Agent/HandOverTexts.h"

namespace brellin::handOverTexts {

QString opened()
{
    return QStringLiteral("Prüfbericht gespeichert. Claude ist geöffnet – Anfrage mit Strg+V einfügen und senden.");
}

} // namespace brellin::handOverTexts
