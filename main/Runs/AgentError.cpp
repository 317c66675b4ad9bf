#include "Runs/AgentError.h"

#include "Guard/SystemLocations.h"

namespace brellin {

Failure AgentError::noDestination()
{
    return {QStringLiteral("Kein Ziel"), {}};
}

Failure AgentError::systemLocation()
{
    return {SystemLocations::message(), std::make_error_code(std::errc::operation_not_permitted)};
}

Failure AgentError::badCopy()
{
    return {QStringLiteral("Kopie fehlerhaft"), {}};
}

Failure AgentError::badCopyOfMoved()
{
    return {QStringLiteral("Prüfung der Kopie fehlgeschlagen – Original bleibt unverändert"), {}};
}

Failure AgentError::changedSinceScan()
{
    return {QStringLiteral("Hat sich seit der Prüfung geändert und bleibt, wie es ist."), {}};
}

Failure AgentError::targetSwapped(const Location &now)
{
    return {
        QStringLiteral("Der Zielordner wurde währenddessen gegen einen anderen getauscht. Der Eintrag liegt jetzt in "
                       "„%1“ und lässt sich über den Verlauf zurückholen.")
            .arg(shown(now.parent_path())),
        {}};
}

Failure AgentError::keptCopyGone()
{
    return {
        QStringLiteral("Die Datei mit dem gleichen Inhalt ist nicht mehr da oder hat sich geändert – diese bleibt."),
        {}};
}

Failure AgentError::keptForOthers()
{
    return {QStringLiteral("Bleibt: Gleiche Inhalte sind gerade in den Papierkorb gekommen, weil es diesen noch gibt."),
            {}};
}

Failure AgentError::alreadyWorking()
{
    return {QStringLiteral("Der Aufräum-Agent arbeitet gerade."),
            std::make_error_code(std::errc::resource_unavailable_try_again)};
}

} // namespace brellin
