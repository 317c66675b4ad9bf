#include "Agent/Model/ModelTexts.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

struct StatusText {
    ModelStatus status;
    const char16_t *mac;
    const char16_t *linux;
};

constexpr auto statusTexts = std::to_array<StatusText>({
    {ModelStatus::SystemTooOld,
     u"KI braucht macOS 26 und einen Mac mit Apple-Chip – Regeln und Doppelte funktionieren trotzdem.",
     u"KI braucht ein neueres System – Regeln und Doppelte funktionieren trotzdem."},
    {ModelStatus::Available, u"Apple Intelligence ist bereit (läuft auf diesem Mac, ohne Internet).",
     u"KI ist bereit (läuft auf diesem Rechner, ohne Internet)."},
    {ModelStatus::NotEligible,
     u"Dieser Mac unterstützt Apple Intelligence nicht – Regeln und Doppelte funktionieren trotzdem.",
     u"Dieser Rechner unterstützt die KI nicht – Regeln und Doppelte funktionieren trotzdem."},
    {ModelStatus::NotEnabled,
     u"Apple Intelligence ist ausgeschaltet. Einschalten unter Systemeinstellungen › Apple Intelligence & Siri.",
     u"Die KI ist ausgeschaltet. Einschalten in den Einstellungen des Aufräum-Agenten."},
    {ModelStatus::Loading, u"Das KI-Modell wird noch geladen – bitte später erneut versuchen.",
     u"Das KI-Modell wird noch geladen – bitte später erneut versuchen."},
    {ModelStatus::Unavailable, u"KI nicht verfügbar.", u"KI nicht verfügbar."},
});

} // namespace

QString modelStatusText(ModelStatus status, TextSystem system)
{
    const auto *const text = std::ranges::find(statusTexts, status, &StatusText::status);
    return QString::fromUtf16(system == TextSystem::Mac ? text->mac : text->linux);
}

QString modelSetupText(TextSystem system)
{
    if (system == TextSystem::Mac)
        return {};
    return QStringLiteral("Die KI läuft auf diesem Rechner, in einem Modell-Server, den du selbst startest: den Server "
                          "von llama.cpp („llama-server -m MODELL.gguf“, Adresse http://127.0.0.1:8080) oder Ollama "
                          "(„ollama serve“, Adresse http://127.0.0.1:11434). Gefragt wird er erst, wenn du seine "
                          "Adresse bestätigt hast; andere Rechner werden nie gefragt.");
}

} // namespace brellin
