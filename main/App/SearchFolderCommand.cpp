#include "App/Command.h"
#include "App/Interruption.h"
#include "App/ItemListing.h"
#include "App/TypedLocation.h"
#include "Base/Job.h"
#include "ContentView/BrowserTexts.h"
#include "ContentView/FolderSearch.h"

#include <QEventLoop>

namespace brellin {

namespace {

/// Waits for the search; Ctrl-C cancels it.
FolderSearchResult searched(const Location &folder, const QString &query, HiddenEntries hidden)
{
    QThreadPool pool;
    QEventLoop loop;
    Job<FolderSearchResult> job;
    FolderSearchResult found;
    const Interruption interruption([&job] { job.cancel(); });
    job.start(
        pool, [=](JobControl &control) { return searchFolder({folder, query, hidden}, &control); },
        [&](FolderSearchResult result) {
            found = std::move(result);
            loop.quit();
        });
    loop.exec();
    return found;
}

} // namespace

ExitCode runSearchFolderCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    const QString query = words.size() == 2 ? QString::fromStdString(words[1]).trimmed() : QString();
    if (query.isEmpty())
        return context.refuse(QStringLiteral("So nicht. Wie es geht, zeigt: brellin suchen --hilfe"));
    const Location folder = typedLocation(words[0]);
    const bool all = context.arguments.has(QStringLiteral("alle"));
    const FolderSearchResult result = searched(folder, query, all ? HiddenEntries::Shown : HiddenEntries::LeftOut);
    if (result.error && result.error->isCancelled())
        return ExitCode::Cancelled;
    const DisplayedItems items = displayed(result.items, {});
    if (context.json())
        context.terminal.printJson(jsonOf(items));
    else if (!result.error)
        context.terminal.printColumns(rowsOf(items, folder));
    if (result.capped)
        context.terminal.message(QStringLiteral("Gezeigt werden nur die ersten 3.000 Treffer."));
    if (!result.gaps.empty())
        context.terminal.message(gapsText(result.gaps) + u'.');
    if (!result.error)
        return ExitCode::Done;
    context.terminal.message(unreadableFolderText(result.error->message));
    return ExitCode::Failed;
}

} // namespace brellin
