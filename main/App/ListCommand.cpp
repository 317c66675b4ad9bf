#include "App/ListCommand.h"

#include "Disk/FileAttributes.h"
#include "System/AtomicWrite.h"
#include "System/ReadWhole.h"

#include <array>

namespace brellin {

ExitCode exportList(const CommandContext &context, const QByteArray &forFile, const QJsonValue &json)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.size() < 2) {
        context.terminal.printJson(json);
        return ExitCode::Done;
    }
    const Location file = words[1];
    if (entryExists(file))
        return context.refuse(QStringLiteral("„%1“ gibt es schon.").arg(printable(shownName(file))));
    if (const Result<void> written = writeAtomically(file, forFile); !written)
        return context.refuse(printable(shownName(file)) + QStringLiteral(": ") + written.error().message);
    if (context.json())
        context.terminal.printJson(json);
    return ExitCode::Done;
}

Result<QByteArray> importedText(const CommandContext &context)
{
    const Location file = context.arguments.rest()[1];
    Result<QByteArray> text = readWhole(file);
    if (!text)
        return failure(Failure{shownName(file) + QStringLiteral(": ") + text.error().message, text.error().code});
    return text;
}

Result<ListVerb> listVerb(const CommandContext &context, const QString &command, const QStringList &known)
{
    struct Verb {
        QLatin1StringView word;
        ListVerb verb = ListVerb::Show;
        std::size_t least = 0;
        std::size_t most = 0;
    };
    constexpr std::array verbs{Verb{QLatin1StringView("export"), ListVerb::Export, 1, 2},
                               Verb{QLatin1StringView("import"), ListVerb::Import, 2, 2},
                               Verb{QLatin1StringView("beispiele"), ListVerb::Examples, 1, 1}};
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.empty())
        return ListVerb::Show;
    const QString word = asciiWord(words[0]);
    if (!known.contains(word))
        return failure(unknownWordMessage(QStringLiteral("Unbekannter Befehl"), word, known));
    for (const Verb &verb : verbs) {
        if (word == verb.word && words.size() >= verb.least && words.size() <= verb.most)
            return verb.verb;
    }
    return failure(QStringLiteral("So nicht. Wie es geht, zeigt: brellin %1 --hilfe").arg(command));
}

} // namespace brellin
