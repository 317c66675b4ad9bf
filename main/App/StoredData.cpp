#include "App/StoredData.h"

#include "Agent/AgentKinds.h"
#include "ContentView/FolderViews.h"
#include "ContentView/StoredShortcuts.h"
#include "ContentView/StoredWindows.h"
#include "Features/FolderColors.h"
#include "Places/NetworkServers.h"
#include "SendTo/SendToTargets.h"
#include "Sidebar/QuickEntryJson.h"

#include <algorithm>

namespace brellin {

namespace {

const QString howToGoOn = QStringLiteral(" Wie es weitergeht: brellin daten");

QString word(StoredState state)
{
    switch (state) {
    case StoredState::Absent:
        return QStringLiteral("absent");
    case StoredState::Whole:
        return QStringLiteral("whole");
    case StoredState::Partly:
        return QStringLiteral("partly");
    case StoredState::Damaged:
        return QStringLiteral("damaged");
    case StoredState::Unreadable:
        return QStringLiteral("unreadable");
    }
    return {};
}

QString text(StoredState state)
{
    switch (state) {
    case StoredState::Absent:
        return QStringLiteral("noch nichts");
    case StoredState::Whole:
        return QStringLiteral("in Ordnung");
    case StoredState::Partly:
        return QStringLiteral("zum Teil beschädigt");
    case StoredState::Damaged:
        return QStringLiteral("beschädigt");
    case StoredState::Unreadable:
        return QStringLiteral("nicht lesbar");
    }
    return {};
}

const StoredKind *kindOf(const QString &key)
{
    const auto found = std::ranges::find(storedKinds(), key, &StoredKind::key);
    return found == storedKinds().end() ? nullptr : &*found;
}

ExitCode listData(CommandContext &context)
{
    QJsonArray json;
    std::vector<QStringList> rows;
    std::vector<StoredCondition> damaged;
    for (const StoredKind &kind : storedKinds()) {
        const StoredCondition one = conditionOf(context.services.settings(), kind);
        if (one.state == StoredState::Absent)
            continue;
        json.append(QJsonObject{{QStringLiteral("list"), one.list},
                                {QStringLiteral("file"), toJson(one.file)},
                                {QStringLiteral("state"), word(one.state)}});
        rows.push_back({one.list, text(one.state), printable(one.file, context.services.folders().home)});
        if (!one.isWhole())
            damaged.push_back(one);
    }
    if (context.json()) {
        context.terminal.printJson(json);
        return ExitCode::Done;
    }
    context.terminal.printColumns(rows, 0);
    for (const StoredCondition &one : damaged) {
        context.terminal.print({});
        context.terminal.print(printable(one.text()));
        if (one.hasLastGood)
            context.terminal.print(
                QStringLiteral("  Die letzte gute Fassung: brellin daten wiederherstellen %1").arg(one.list));
        context.terminal.print(QStringLiteral("  Ein neuer Anfang: brellin daten neu %1").arg(one.list));
    }
    return ExitCode::Done;
}

} // namespace

const std::vector<StoredKind> &storedKinds()
{
    static const std::vector<StoredKind> kinds = [] {
        std::vector<StoredKind> all = agentKinds();
        all.push_back(storedKind<QuickEntry>(QStringLiteral("quickAccess")));
        all.push_back(storedKind<Location>(QStringLiteral("sidebarExpanded")));
        all.push_back(storedKind<QString>(QStringLiteral("sidebarFolded")));
        for (const StoredKind &kind : {FolderColors::kind(), folderViewsKind(), folderArrangementsKind(),
                                       SendToTargets::kind(), NetworkServers::kind(), windowsKind(), shortcutsKind()})
            all.push_back(kind);
        return all;
    }();
    return kinds;
}

QString damageNotice(const StoredCondition &condition)
{
    return printable(condition.text()) + howToGoOn;
}

std::optional<ExitCode> refuseIfDamaged(const CommandContext &context, const QString &list)
{
    const StoredKind *const kind = kindOf(list);
    const StoredCondition condition = kind ? conditionOf(context.services.settings(), *kind) : StoredCondition();
    if (condition.isWhole())
        return std::nullopt;
    const ExitCode refused = context.refuse(damageNotice(condition));
    return condition.state == StoredState::Partly ? std::nullopt : std::optional(refused);
}

ExitCode runDataCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.empty())
        return listData(context);
    const QString verb = asciiWord(words.front());
    const bool restore = verb == QStringLiteral("wiederherstellen");
    if (words.size() != 2 || (!restore && verb != QStringLiteral("neu")))
        return context.refuse(QStringLiteral("So nicht: brellin daten [wiederherstellen LISTE | neu LISTE]"));
    const QString list = QString::fromStdString(words[1]);
    const StoredKind *const kind = kindOf(list);
    if (!kind)
        return context.refuse(
            QStringLiteral("Eine Liste „%1“ gibt es nicht. Welche es gibt: brellin daten").arg(printable(list)));
    UserDefaults &settings = context.services.settings();
    const StoredCondition condition = conditionOf(settings, *kind);
    if (condition.isWhole())
        return context.refuse(condition.text() + QStringLiteral(" Daran wird nichts geändert."));
    if (const Result<void> done = restore ? restoreLastGood(settings, *kind) : beginAnew(settings, *kind); !done)
        return context.refuse(printable(done.error().message));
    return listData(context);
}

} // namespace brellin
