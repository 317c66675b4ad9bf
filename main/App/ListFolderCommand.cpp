#include "App/Command.h"
#include "App/ItemListing.h"
#include "App/TerminalWork.h"
#include "App/TypedLocation.h"
#include "ContentView/BrowserTexts.h"
#include "ContentView/Listing.h"
#include "Features/FolderSizes.h"
#include "Features/NetworkSettings.h"

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
    const auto direction =
        arguments.has(QStringLiteral("absteigend")) ? SortDirection::Descending : SortDirection::Ascending;
    const std::vector<std::string> asked = arguments.values(QStringLiteral("sortiert"));
    if (asked.empty())
        return orderBy(SortKey::Name, direction);
    SortKey key = SortKey::Name;
    const QString word = asciiWord(asked.back());
    QStringList words;
    for (const Word &one : known) {
        words << one.word;
        key = word == one.word ? one.key : key;
    }
    if (!words.contains(word))
        return failure(unknownWordMessage(QStringLiteral("Unbekannte Sortierung"), word, words));
    return orderBy(key, direction);
}

/// The sizes that a pane would count unasked; lower bounds are no known sizes.
std::vector<std::optional<std::int64_t>> countedSizes(const FileItems &items, const UserDefaults &settings,
                                                      const JobControl &control)
{
    const SystemVolumes volumes;
    const bool everywhere = folderSizesNetwork.isOn(settings);
    std::vector<std::optional<std::int64_t>> sizes(items.size());
    for (std::size_t i = 0; i < items.size() && !control.cancelled(); ++i) {
        const Location folder = items[i].location();
        if (!items[i].isFolder || items[i].link != LinkState::None || !(everywhere || volumes.isLocal(folder)))
            continue;
        if (const auto count = countFolder(folder, &control, FolderSizes::automaticLimit); count && count->complete)
            sizes[i] = count->bytes;
    }
    return sizes;
}

DisplayedItems sorted(CommandContext &context, const FileItems &items, const SortOrder &order)
{
    DisplayOptions options{.order = order};
    if (sortsBySize(order)) {
        const auto sizes = workWithProgress<std::vector<std::optional<std::int64_t>>>(
            context.terminal,
            [&](JobControl &control) { return countedSizes(items, context.services.settings(), control); },
            [](const JobControl &) { return QStringLiteral("Zähle die Ordner …"); });
        options.folderSize = [&items, sizes](const FileItem &folder) {
            return sizes[static_cast<std::size_t>(&folder - &items[0])];
        };
    }
    return displayed(items, options);
}

/// A Trash that was never used is empty.
bool isUnusedTrash(const CommandContext &context, const Location &folder, const Listing &listing)
{
    return folder == context.services.folders().trash && listing.error &&
           listing.error->is(std::errc::no_such_file_or_directory);
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
    Listing listing = readListing(folder, all ? HiddenEntries::Shown : HiddenEntries::LeftOut, SystemVolumes());
    if (isUnusedTrash(context, folder, listing))
        listing.error.reset();
    const DisplayedItems items = sorted(context, listing.items, *order);
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
