#include "FileOperations/FileOperations.h"

#include "Base/AbandonablePool.h"
#include "FileOperations/NewEntries.h"
#include "FileOperations/OperationTexts.h"
#include "FileOperations/ProgressFraction.h"
#include "FileOperations/RecordedAction.h"
#include "FileOperations/RightsChange.h"
#include "FileOperations/Unpacking.h"
#include "FileOperations/ZipArchive.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brellin {

using namespace operationTexts;

namespace {

/// Time for running operations to finish their current step when the program ends.
constexpr auto patienceWithOperations = std::chrono::seconds(5);

OperationOutcome failedOutcome(const Location &entry, const Failure &why)
{
    return {{}, {{entry, why}}, false};
}

/// Outcome of an operation with one result. A cancel is no failure, unless it left something behind.
OperationOutcome outcomeOf(UserAction::Kind kind, const Location &from, const Result<Location> &made)
{
    if (made)
        return {{kind, {recordOfMade(from, *made)}}, {}, false};
    if (made.error().isCancelled())
        return {{kind, {}},
                made.error() == Failure::cancelled() ? EntryFailures() : EntryFailures{{{}, made.error()}},
                true};
    return failedOutcome({}, made.error());
}

EntryFailures sentences(const QStringList &texts)
{
    EntryFailures all;
    for (const QString &text : texts)
        all << EntryFailure{{}, {text, {}}};
    return all;
}

OperationOutcome plainOutcome(const Location &entry, const Result<void> &done)
{
    return done ? OperationOutcome() : failedOutcome(entry, done.error());
}

} // namespace

/// One operation on its own thread, so that an unresponsive volume does not block others.
struct FileOperations::Operation {
    int id = 0;
    QString title;
    QString detail;
    std::optional<double> progress;
    std::shared_ptr<QThreadPool> pool = abandonablePool(patienceWithOperations);
    Job<OperationOutcome> job;
};

FileOperations::FileOperations(FileOperationServices services) : m_services(std::move(services)) {}

FileOperations::~FileOperations() = default;

void FileOperations::start(const QString &title, Work work, Finished finished)
{
    publish(status, QString()); // the same result again is news
    auto made = std::make_unique<Operation>();
    Operation *const operation = made.get();
    operation->id = ++m_lastId;
    operation->title = title;
    m_operations.push_back(std::move(made));
    operation->job.start(
        *operation->pool, std::move(work),
        [this, id = operation->id, finished = std::move(finished)](const OperationOutcome &outcome) {
            ended(id, outcome, finished);
        },
        [this, operation](const JobControl &control) {
            operation->progress = progressFraction(control);
            operation->detail = control.detail();
            publishOperations();
        });
    publishOperations();
}

FileOperations::Work FileOperations::guarded(std::vector<Location> places, Work work) const
{
    return [places = std::move(places), work = std::move(work), mayChange = m_services.mayChange](JobControl &control) {
        for (const Location &place : places) {
            if (mayChange && !mayChange(place))
                return failedOutcome(place, {operationTexts::systemRefusal(), {}});
        }
        return work(control);
    };
}

FileOperations::Work FileOperations::guarded(std::vector<Location> places, StepPlan step, Work work) const
{
    return guarded(std::move(places), recorded(m_services.records, std::move(step), std::move(work)));
}

void FileOperations::ended(int id, const OperationOutcome &outcome, const Finished &finished)
{
    // Keep the operation alive until return: its job is calling this. `tell` may start another operation.
    const Finished tell = finished;
    const auto found = std::ranges::find(m_operations, id, [](const auto &one) { return one->id; });
    const std::shared_ptr<Operation> done(std::move(*found));
    m_operations.erase(found);
    publishOperations();
    tell(outcome);
}

FileOperations::Finished FileOperations::telling(const QString &success, Then then, const QString &lead)
{
    return [this, success, lead, then = std::move(then)](const OperationOutcome &outcome) {
        m_services.undo.record(outcome.action);
        OperationOutcome told = outcome;
        told.lead = lead;
        const bool heard = then.receiver && then.call;
        if (!outcome.failures.isEmpty() && !(heard && then.failures == Failures::ToReceiver))
            publish(errorMessage, std::optional(told.message()));
        const QString bad = outcome.cancelled ? QStringLiteral("Abgebrochen.") : QString();
        publish(status, outcome.failures.isEmpty() && bad.isEmpty() ? success : bad);
        if (heard)
            then.call(told);
    };
}

void FileOperations::newTextDocument(const Location &folder, Then then)
{
    start(QStringLiteral("Lege Textdokument an"),
          guarded(
              {folder / "Neu"}, {StepKind::NewFile, {}, {}},
              [folder](JobControl &) { return outcomeOf(UserAction::Kind::NewFile, {}, createTextDocument(folder)); }),
          telling({}, std::move(then)));
}

void FileOperations::trash(const std::vector<Location> &entries, Then then)
{
    const QString what = named(entries);
    start(QStringLiteral("Lege %1 in den Papierkorb").arg(what),
          guarded(entries, {StepKind::Trash, entries, {}},
                  [entries, &trash = m_services.trash](JobControl &control) {
                      return putInTrash(entries, trash, control);
                  }),
          telling(QStringLiteral("%1 in den Papierkorb gelegt.").arg(what), std::move(then)));
}

void FileOperations::emptyTrash(const std::optional<TrashAmount> &amount, Then then)
{
    ask(emptyTrashQuestion(amount), [this, then = std::move(then)] {
        start(
            QStringLiteral("Leere den Papierkorb"),
            [home = m_services.homeTrash, &volumes = m_services.volumes](JobControl &control) {
                return brellin::emptyTrash({home, volumes}, control);
            },
            telling(QStringLiteral("Papierkorb geleert."), then,
                    QStringLiteral("Papierkorb konnte nicht geleert werden: ")));
    });
}

void FileOperations::deleteForGood(const std::vector<Location> &entries, Then then)
{
    const auto doomed = std::make_shared<Doomed>();
    start(QStringLiteral("Prüfe %1").arg(named(entries)),
          guarded(entries,
                  [doomed, entries, home = m_services.homeTrash, &volumes = m_services.volumes](JobControl &control) {
                      *doomed = deletableForGood(entries, {home, volumes}, &control);
                      return OperationOutcome{
                          {}, doomed->entries.empty() ? doomed->refused : EntryFailures(), control.cancelled()};
                  }),
          [this, doomed, then = std::move(then)](const OperationOutcome &outcome) {
              if (doomed->entries.empty() || outcome.cancelled) {
                  telling({}, then)(outcome);
                  return;
              }
              ask(deleteQuestion(doomed->entries, doomed->refused),
                  [this, doomed, then] { startDeleting(doomed->entries, then); });
          });
}

void FileOperations::startDeleting(std::vector<DoomedEntry> entries, Then then)
{
    start(
        QStringLiteral("Lösche endgültig"),
        [entries = std::move(entries), &trash = m_services.trash, home = m_services.homeTrash,
         &volumes = m_services.volumes](JobControl &control) {
            return brellin::deleteForGood(entries, trash, {home, volumes}, control);
        },
        telling(QStringLiteral("Endgültig gelöscht."), std::move(then)));
}

void FileOperations::compress(std::vector<Location> entries, const Location &into, Then then)
{
    const QString title = QStringLiteral("Komprimiere %1").arg(named(entries));
    start(title,
          guarded({into / "Neu"}, {StepKind::Archive, {}, into / zipName(entries)},
                  [entries = std::move(entries), into, &files = m_services.files, &processes = m_services.processes,
                   logs = m_services.archiveLogs](JobControl &control) {
                      const Result<Packed> packed = brellin::compress(entries, into, files, processes, control, logs);
                      OperationOutcome outcome =
                          outcomeOf(UserAction::Kind::Archive, {},
                                    packed ? Result<Location>(packed->place) : failure(packed.error()));
                      outcome.failures << sentences(packed ? packed->notes : QStringList());
                      return outcome;
                  }),
          telling(QStringLiteral("Archiv angelegt."), std::move(then)));
}

void FileOperations::unpack(const Location &archive, const Location &folder, Then then)
{
    struct Look {
        ArchiveSummary summary;
        std::int64_t available = std::numeric_limits<std::int64_t>::max();
    };
    const auto look = std::make_shared<Look>();
    start(
        QStringLiteral("Prüfe „%1“").arg(shownName(archive)),
        [look, archive, folder, &volumes = m_services.volumes,
         reader = m_services.archiveReader](JobControl &control) -> OperationOutcome {
            const Result<ArchiveSummary> summary = summarise(archive, reader, control);
            if (!summary)
                return {{},
                        summary.error().isCancelled() ? EntryFailures() : EntryFailures{{{}, summary.error()}},
                        control.cancelled()};
            look->summary = *summary;
            look->available = volumes.available(folder).value_or(look->available);
            return {};
        },
        [this, look, archive, folder, then = std::move(then)](const OperationOutcome &outcome) {
            if (!outcome.failures.isEmpty() || outcome.cancelled)
                telling({}, then)(outcome);
            else if (look->summary.bytes <= look->available)
                startUnpacking(archive, folder, then);
            else
                ask(unpackQuestion(archive, look->summary, look->available),
                    [this, archive, folder, then] { startUnpacking(archive, folder, then); });
        });
}

void FileOperations::startUnpacking(const Location &archive, const Location &folder, Then then)
{
    start(QStringLiteral("Entpacke „%1“").arg(shownName(archive)),
          guarded({folder / "Neu"}, {StepKind::Unpack, {archive}, {}},
                  [archive, folder,
                   services = UnpackingServices{m_services.files, m_services.volumes, m_services.archiveReader,
                                                m_services.archiveLogs}](JobControl &control) {
                      const Result<Unpacked> unpacked = brellin::unpack(archive, folder, services, control);
                      OperationOutcome outcome =
                          outcomeOf(UserAction::Kind::Unpack, archive,
                                    unpacked ? Result<Location>(unpacked->place) : failure(unpacked.error()));
                      if (unpacked && !unpacked->refused.isEmpty())
                          outcome.failures
                              << sentences({QStringLiteral("Nicht entpackt:\n") + unpacked->refused.join(u'\n')});
                      outcome.failures << sentences(unpacked ? unpacked->notes : QStringList());
                      return outcome;
                  }),
          telling(QStringLiteral("„%1“ entpackt.").arg(shownName(archive)), std::move(then)));
}

void FileOperations::makeAlias(std::vector<Location> sources, const Location &folder, Then then)
{
    start(QStringLiteral("Lege Verknüpfungen an"),
          guarded({folder / "Neu"}, {StepKind::Alias, {}, {}},
                  [sources = std::move(sources), folder](JobControl &) { return makeAliases(sources, folder); }),
          telling({}, std::move(then)));
}

void FileOperations::newFromTemplate(const Location &model, const Location &folder, Then then)
{
    start(QStringLiteral("Lege „%1“ an").arg(shownName(model)),
          guarded({folder / model.filename()}, {StepKind::NewFile, {}, folder / model.filename()},
                  [model, folder, &files = m_services.files, logs = m_services.archiveLogs](JobControl &control) {
                      QStringList notes;
                      OperationOutcome outcome =
                          outcomeOf(UserAction::Kind::NewFile, {},
                                    createFromTemplate(model, folder, files, logs, control, notes));
                      outcome.failures << sentences(notes);
                      return outcome;
                  }),
          telling({}, std::move(then)));
}

void FileOperations::changeRights(std::vector<Location> entries, const RightsWish &wish, Then then)
{
    const QString title = QStringLiteral("Ändere Rechte von %1").arg(named(entries));
    start(
        title,
        [entries = std::move(entries), wish, mayChange = m_services.mayChange, records = m_services.records](
            JobControl &control) { return brellin::changeRights(entries, wish, mayChange, records, control); },
        telling(QStringLiteral("Rechte geändert."), std::move(then)));
}

void FileOperations::openTerminal(const Location &folder)
{
    start(
        QStringLiteral("Öffne ein Terminal"),
        [folder, &workspace = m_services.workspace](JobControl &) {
            return plainOutcome(folder, workspace.openTerminal(folder));
        },
        telling({}, {}));
}

void FileOperations::openWith(std::vector<Location> entries, const QString &application)
{
    if (entries.empty())
        return;
    const QString title = QStringLiteral("Öffne %1").arg(named(entries));
    start(
        title,
        [entries = std::move(entries), application, &workspace = m_services.workspace](JobControl &) {
            return plainOutcome(entries.front(), workspace.openWith(entries, application));
        },
        telling({}, {}));
}

void FileOperations::reveal(const Location &entry)
{
    start(
        QStringLiteral("Zeige %1").arg(named({entry})),
        [entry, &workspace = m_services.workspace](JobControl &) {
            return plainOutcome(entry, workspace.reveal(entry));
        },
        telling({}, {}));
}

void FileOperations::ask(OperationQuestion asked, std::function<void()> accepted)
{
    asked.id = ++m_lastQuestion;
    m_waiting.push_back({std::move(asked), std::move(accepted)});
    publishQuestion();
}

void FileOperations::answer(Answer given)
{
    if (m_waiting.empty())
        return;
    const Waiting answered = std::move(m_waiting.front());
    m_waiting.pop_front();
    publishQuestion();
    if (given == Answer::Accept)
        answered.accepted();
}

void FileOperations::cancel(int operation)
{
    for (const std::unique_ptr<Operation> &one : m_operations) {
        if (one->id == operation)
            one->job.cancel();
    }
}

void FileOperations::dismissError()
{
    publish(errorMessage, std::optional<QString>());
}

void FileOperations::publishOperations()
{
    std::vector<RunningOperation> now;
    for (const std::unique_ptr<Operation> &one : m_operations)
        now.push_back({one->id, one->title, one->detail, one->progress});
    publish(operations, std::move(now));
}

void FileOperations::publishQuestion()
{
    publish(question, m_waiting.empty() ? std::nullopt : std::optional(m_waiting.front().question));
}

} // namespace brellin
