#include "App/StoredData.h"
#include "App/TypedLocation.h"
#include "Sidebar/Pins.h"
#include "Sidebar/QuickEntryJson.h"

namespace brellin {

namespace {

ExitCode show(CommandContext &context, const Pins &pins)
{
    if (context.json()) {
        context.terminal.printJson(toJson(pins.entries.get()));
        return ExitCode::Done;
    }
    std::vector<QStringList> rows;
    for (const QuickEntry &entry : pins.entries.get())
        rows.push_back(
            {printable(entry.name), entry.path ? printable(*entry.path, context.services.folders().home) : QString()});
    context.terminal.printColumns(rows, 0);
    return ExitCode::Done;
}

} // namespace

ExitCode runQuickAccessCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (const std::optional<ExitCode> damaged = refuseIfDamaged(context, Pins::key))
        return *damaged;
    if (words.empty())
        return show(context, Pins(context.services.forgottenSettings(), context.services.folders()));
    const QString verb = asciiWord(words.front());
    const bool pin = verb == QStringLiteral("anheften");
    if (words.size() != 2 || (!pin && verb != QStringLiteral("loesen")))
        return context.refuse(QStringLiteral("So nicht: brellin schnellzugriff [anheften ORDNER | loesen ORDNER]"));
    const Location folder = typedLocation(words[1]);
    std::error_code error;
    if (pin && !std::filesystem::is_directory(folder, error))
        return context.refuse(QStringLiteral("„%1“ ist kein Ordner.").arg(printable(shown(Location(words[1])))));
    Pins pins(context.services.settings(), context.services.folders());
    if (!pin && !pins.holds(folder))
        context.terminal.message(
            QStringLiteral("„%1“ ist nicht angeheftet.").arg(printable(shown(Location(words[1])))));
    if (const Result<void> done = pin ? pins.pin(folder) : pins.unpin(folder); !done)
        return context.refuse(done.error().message);
    return show(context, pins);
}

} // namespace brellin
