#include "App/CommandLine.h"

#include "App/Command.h"
#include "App/Remnants.h"
#include "App/Shutdown.h"
#include "App/WindowStart.h"
#include "Base/Edition.h"

#include <algorithm>

namespace brellin {

namespace {

/// Adds the options that every command accepts.
std::vector<OptionSpec> withCommonOptions(std::vector<OptionSpec> options)
{
    options.push_back({QStringLiteral("json"), {}, QStringLiteral("das Ergebnis als JSON ausgeben")});
    options.push_back({QStringLiteral("ruhig"), {}, QStringLiteral("keinen Fortschritt zeigen")});
    options.push_back({QStringLiteral("hilfe"), {}, QStringLiteral("diese Hilfe zeigen")});
    return options;
}

void printOptions(Terminal &terminal, const std::vector<OptionSpec> &options)
{
    std::vector<QStringList> rows;
    for (const OptionSpec &option : options)
        rows.push_back({(QStringLiteral("--") + option.name + u' ' + option.valueName).trimmed(), option.help});
    terminal.print(QStringLiteral("Optionen:"));
    terminal.printColumns(rows);
}

void printHelp(Terminal &terminal)
{
    terminal.print(QStringLiteral("%1 räumt deine Ordner auf: nach deinen Regeln, auf Vorschlag und zum Zurücknehmen.")
                       .arg(Edition::name()));
    terminal.print({});
    terminal.print(QStringLiteral("Aufruf: brellin BEFEHL [OPTIONEN]"));
    terminal.print({});
    terminal.print(QStringLiteral("Befehle:"));
    std::vector<QStringList> rows;
    for (const Command &command : commands())
        rows.push_back({(command.name + u' ' + command.usage).trimmed(), command.summary});
    terminal.printColumns(rows);
    terminal.print({});
    printOptions(terminal, withCommonOptions({{QStringLiteral("version"), {}, QStringLiteral("die Version zeigen")}}));
    terminal.print({});
    terminal.print(QStringLiteral("Mehr zu einem Befehl: brellin BEFEHL --hilfe"));
}

void printHelp(Terminal &terminal, const Command &command)
{
    terminal.print(QStringLiteral("Aufruf: brellin ") + (command.name + u' ' + command.usage).trimmed());
    terminal.print({});
    terminal.print(command.summary);
    terminal.print({});
    printOptions(terminal, withCommonOptions(command.options));
}

ExitCode runCommand(const Command &command, const std::vector<std::string> &words)
{
    const Result<Arguments> arguments = Arguments::parse(words, withCommonOptions(command.options));
    if (!arguments) {
        Terminal(Terminal::Progress::Hidden).message(arguments.error().message);
        return ExitCode::NotPossible;
    }
    const bool quiet = arguments->has(QStringLiteral("ruhig")) || arguments->has(QStringLiteral("json"));
    Terminal terminal(quiet ? Terminal::Progress::Hidden : Terminal::Progress::Shown);
    if (arguments->has(QStringLiteral("hilfe"))) {
        printHelp(terminal, command);
        return ExitCode::Done;
    }
    Services services;
    CommandContext context{services, terminal, *arguments};
    ExitCode code = command.run(context);
    if (const std::optional<QString> unrecorded = services.records().takeFailure())
        terminal.message(printable(*unrecorded));
    if (command.name != QStringLiteral("reste"))
        mentionRemnants(services, terminal);
    if (!Terminal::allWritten()) {
        terminal.message(QStringLiteral("Die Ausgabe konnte nicht geschrieben werden."));
        code = code == ExitCode::Done ? ExitCode::Failed : code;
    }
    // Must come before the services are destroyed, since workers may still use them.
    return static_cast<ExitCode>(Shutdown::end(static_cast<int>(code)));
}

bool isFolderArgument(const std::string &word)
{
    std::error_code error;
    return word.find('/') != std::string::npos || std::filesystem::is_directory(word, error);
}

} // namespace

ExitCode runCommandLine(const std::vector<std::string> &words)
{
    Terminal terminal(Terminal::Progress::Hidden);
    const QString first = words.empty() ? QString() : asciiWord(words.front());
    if (first == QStringLiteral("--hilfe") || first == QStringLiteral("--help") || first == QStringLiteral("-h")) {
        printHelp(terminal);
        return ExitCode::Done;
    }
    if (first == QStringLiteral("--version")) {
        terminal.print(Edition::name() + u' ' + Edition::version());
        return ExitCode::Done;
    }
    const auto command = std::ranges::find(commands(), first, &Command::name);
    if (command != commands().end())
        return runCommand(*command, {words.begin() + 1, words.end()});
    if (words.empty() || isFolderArgument(words.front())) {
        terminal.message(becomeWindow(words).message);
        return ExitCode::NotPossible;
    }
    QStringList names;
    for (const Command &known : commands())
        names << known.name;
    const bool option = words.front().starts_with("--");
    terminal.message(unknownWordMessage(
        option ? QStringLiteral("Unbekannte Option") : QStringLiteral("Unbekannter Befehl"), printable(first), names));
    return ExitCode::NotPossible;
}

} // namespace brellin
