#include "App/Command.h"
#include "App/ItemListing.h"
#include "App/TypedLocation.h"
#include "ContentView/BrowserTexts.h"
#include "ContentView/Listing.h"

#include <QJsonObject>

#include <array>

namespace brellin {

namespace {

/// The sort order given by `--sortiert` and `--absteigend`.
Result<SortOrder> orderAsked(const Arguments &arguments)
{
    struct Word {
        QLatin1StringView word;
        SortKey key = SortKey::Name;
    };
    constexpr std::array known{
        Word{QLatin1StringView("name"), SortKey::Name}, Word{QLatin1StringView("groesse"), SortKey::Size},
        Word{QLatin1StringView("datum"), SortKey::Modified}, Word{QLatin1StringView("art"), SortKey::Kind}};
    SortComparator first;
    if (arguments.has(QStringLiteral("absteigend")))
        first.direction = SortDirection::Descending;
    const std::vector<std::string> asked = arguments.values(QStringLiteral("sortiert"));
    if (asked.empty())
        return SortOrder{first};
    const QString word = asciiWord(asked.back());
    QStringList words;
    for (const Word &one : known) {
        words << one.word;
        first.key = word == one.word ? one.key : first.key;
    }
    if (!words.contains(word))
        return failure(unknownWordMessage(QStringLiteral("Unbekannte Sortierung"), word, words));
    return SortOrder{first, SortComparator{}};
}

QJsonObject answer(const DisplayedItems &items, const Listing &listing, const QString &error, const QString &status)
{
    const auto orNull = [](bool there, const QJsonValue &value) {
        return there ? value : QJsonValue(QJsonValue::Null);
    };
    return {{QStringLiteral("items"), jsonOf(items)},
            {QStringLiteral("freeSpace"),
             orNull(listing.freeSpace.has_value(), static_cast<qint64>(listing.freeSpace.value_or(0)))},
            {QStringLiteral("error"), orNull(listing.error.has_value(), error)},
            {QStringLiteral("status"), status}};
}

QString errorText(const CommandContext &context, const Location &folder, const Failure &error)
{
    return folder == context.services.folders().trash ? unreadableTrashText(error.message)
                                                      : unreadableFolderText(error.message);
}

} // namespace

ExitCode runListFolderCommand(CommandContext &context)
{
    if (context.arguments.rest().size() != 1)
        return context.refuse(QStringLiteral("So nicht. Wie es geht, zeigt: brellin liste --hilfe"));
    const Result<SortOrder> order = orderAsked(context.arguments);
    if (!order)
        return context.refuse(order.error().message);
    const Location folder = typedLocation(context.arguments.rest().front());
    const bool all = context.arguments.has(QStringLiteral("alle"));
    const Listing listing = readListing(folder, all ? HiddenEntries::Shown : HiddenEntries::LeftOut, SystemVolumes());
    const DisplayedItems items = displayed(listing.items, {.order = *order});
    const QString status = statusLine(items.size(), {}, listing.freeSpace);
    const QString error = listing.error ? errorText(context, folder, *listing.error) : QString();
    if (context.json()) {
        context.terminal.printJson(answer(items, listing, error, status));
    } else if (listing.error) {
        context.terminal.message(error);
    } else {
        context.terminal.printColumns(rowsOf(items, folder));
        context.terminal.print(status);
    }
    return listing.error ? ExitCode::Failed : ExitCode::Done;
}

} // namespace brellin
