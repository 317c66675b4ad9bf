#include "App/Services.h"
#include "App/TransferUndo.h"
#include "Base/German.h"
#include "FileOperations/UndoAction.h"
#include "Transfers/TransferEngine.h"

#include <QCoreApplication>

#include <iostream>

namespace brellin {

namespace {

void say(const QStringList &lines)
{
    for (const QString &line : lines)
        std::cerr << line.toStdString() << '\n';
}

/// Moves or copies, replacing existing entries, then undoes that.
bool transferAndUndo(TransferKind kind, const std::vector<Location> &sources, const Location &folder)
{
    Services services;
    MountWorkers workers(services.volumes());
    const TransferServices transfers = services.forTransfers(workers);
    std::vector<TransferStep> steps;
    for (const Location &source : sources)
        steps.push_back({source, folder / source.filename(), true, {}});
    TransferState state;
    const TransferOutcome outcome = TransferEngine(transfers).run(steps, kind, state);
    say(linesOf(outcome.errors) + outcome.notes);
    const TransferRecord record{QUuid::createUuid(), kind, folder, {}, outcome.done};
    JobControl control;
    const UndoneAction undone =
        undoAction(actionOf(record),
                   {services.files(), services.trash(), services.renameLogs(), services.transferLogs()}, control);
    say(linesOf(undone.failures));
    return outcome.errors.isEmpty() && undone.failures.isEmpty();
}

} // namespace

} // namespace brellin

/// A transfer and its undo as the window does them: brellin-undo kopieren|verschieben SOURCE… FOLDER
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(brellin::german());
    if (argc < 4)
        return 2;
    using brellin::TransferKind;
    const auto kind = std::string_view(argv[1]) == "verschieben" ? TransferKind::Move : TransferKind::Copy;
    return brellin::transferAndUndo(kind, {argv + 2, argv + argc - 1}, argv[argc - 1]) ? 0 : 1;
}
