#include "Transfers/WhyItStays.h"

namespace brellin {

namespace {

QString reasonOf(WhyItStays why)
{
    switch (why) {
    case WhyItStays::IsSource:
        return QStringLiteral("Was im Ziel steht, ist selbst ein Original dieser Übertragung.");
    case WhyItStays::HoldsSource:
        return QStringLiteral("Was im Ziel steht, enthält ein Original dieser Übertragung.");
    case WhyItStays::LiesInSource:
        return QStringLiteral("Was im Ziel steht, liegt in einem Original dieser Übertragung.");
    case WhyItStays::HoldsDestination:
        return QStringLiteral("Was im Ziel steht, führt zum Zielordner selbst oder enthält ihn.");
    case WhyItStays::InDoubt:
        return QStringLiteral("Ob es zu den Originalen dieser Übertragung gehört, lässt sich nicht feststellen.");
    case WhyItStays::OnlyCopy:
        return QStringLiteral(
            "Was im Ziel steht, ist die einzige vollständige Kopie eines unterbrochenen Verschiebens.");
    case WhyItStays::LogUnread:
        return QStringLiteral(
            "Das Protokoll eines unterbrochenen Vorgangs ist nicht lesbar (brellin reste nennt es), und "
            "am Ziel gibt es keinen Papierkorb.");
    case WhyItStays::NotSeen:
        return QStringLiteral("Am Ziel gibt es keinen Papierkorb, und was dort steht, lässt sich nicht ganz ansehen.");
    }
    return {};
}

} // namespace

QString sentenceOf(WhyItStays why)
{
    return QStringLiteral("Ersetzen geht hier nicht: ") + reasonOf(why);
}

} // namespace brellin
