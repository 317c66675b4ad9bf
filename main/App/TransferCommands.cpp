#include "App/Command.h"
#include "App/Interruption.h"
#include "App/TerminalAnswer.h"
#include "App/TransferUndo.h"
#include "App/TypedLocation.h"
#include "Base/Json.h"
#include "Transfers/TransferQueue.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <array>
#include <iterator>

namespace brellin {

namespace {

/// A value of `--konflikt`.
struct ConflictWord {
    QLatin1StringView word;
    std::optional<ConflictChoice> choice; ///< nullopt: cancel
};
constexpr std::array conflictWords{ConflictWord{QLatin1StringView("ersetzen"), ConflictChoice::replace},
                                   ConflictWord{QLatin1StringView("beide"), ConflictChoice::keepBoth},
                                   ConflictWord{QLatin1StringView("ueberspringen"), ConflictChoice::skip},
                                   ConflictWord{QLatin1StringView("zusammenfuehren"), ConflictChoice::merge},
                                   ConflictWord{QLatin1StringView("abbrechen"), std::nullopt}};

/// The values together: merging applies to folders, the last of the others to everything else. Without one: ask if
/// possible.
struct ConflictWish {
    bool mergesFolders = false;
    std::optional<ConflictWord> otherwise;
};

Result<ConflictWord> conflictWord(const QString &word)
{
    QStringList known;
    for (const ConflictWord &one : conflictWords) {
        if (word == one.word)
            return one;
        known << one.word;
    }
    return failure(unknownWordMessage(QStringLiteral("Unbekannte Angabe"), printable(word), known));
}

Result<ConflictWish> conflictWish(const Arguments &arguments)
{
    ConflictWish wish;
    for (const std::string &value : arguments.values(QStringLiteral("konflikt"))) {
        const ConflictWord word = TRY(conflictWord(asciiWord(value)));
        if (word.choice == ConflictChoice::merge)
            wish.mergesFolders = true;
        else
            wish.otherwise = word;
    }
    return wish;
}

/// A transfer on the command line: answers questions according to `--konflikt`, by asking the user, or in the safest
/// way, and waits for the end.
class TransferCommand {
public:
    TransferCommand(CommandContext &context, ConflictWish wish)
        : m_context(context)
        , m_wish(wish)
        , m_workers(context.services.volumes())
        , m_queue(context.services.forTransfers(m_workers), context.services.clock())
    {
    }

    FinishedTransfer run(TransferRequest request)
    {
        QObject receiver;
        m_queue.questions.observe(&receiver, [this](const std::vector<TransferQuestion> &open) {
            m_asking.drop();
            if (!open.empty())
                answer(open.front());
        });
        m_queue.lastFinished.observe(&receiver, [this](const std::optional<FinishedTransfer> &) { m_loop.quit(); });
        const Interruption interruption([this] { m_queue.cancelAll(); });
        QTimer progress;
        QObject::connect(&progress, &QTimer::timeout, &progress, [&] {
            showProgress();
            progress.setInterval(200);
        });
        progress.start(1000);
        m_queue.transfer(std::move(request));
        m_loop.exec();
        m_context.terminal.clearProgress();
        FinishedTransfer finished = *m_queue.lastFinished.get();
        finished.outcome.errors = m_refused + finished.outcome.errors;
        return finished;
    }

private:
    bool canAsk() const { return !m_context.json() && TerminalAnswer::possible(); }

    void answer(const TransferQuestion &question)
    {
        if (const auto given = std::visit([this](const auto &about) { return answerTo(about); }, question.about))
            return m_queue.answer(question.id, *given);
        m_asking.ask(m_context.terminal, textOf(question),
                     [this, id = question.id](const TransferAnswer &chosen) { m_queue.answer(id, chosen); });
    }

    std::optional<TransferAnswer> answerTo(const ConflictQuestion &question)
    {
        if (m_wish.mergesFolders && question.merge)
            return ConflictAnswer{ConflictChoice::merge};
        const std::optional<ConflictWord> &word = m_wish.otherwise;
        if (!word && canAsk())
            return std::nullopt;
        if (!word || !word->choice) {
            m_context.terminal.message(
                printable(QStringLiteral("„%1“ ist im Ziel schon vorhanden.").arg(question.name)));
            return ConflictAnswer{};
        }
        if (*word->choice == ConflictChoice::replace && question.stays) {
            refuse(question.name, sentenceOf(*question.stays));
            return ConflictAnswer{ConflictChoice::skip};
        }
        return ConflictAnswer{word->choice};
    }

    /// The command line never removes anything for good.
    std::optional<TransferAnswer> answerTo(const NoTrashQuestion &question)
    {
        refuse(question.name, QStringLiteral("Am Ziel gibt es keinen Papierkorb; der vorhandene Eintrag bleibt."));
        return Confirmation::No;
    }

    std::optional<TransferAnswer> answerTo(const ObstacleQuestion &question)
    {
        if (canAsk())
            return std::nullopt;
        for (const QString &line : question.lines)
            m_refused << EntryFailure{{}, {line, {}}};
        return ObstacleChoice::Cancel;
    }

    void refuse(const QString &name, const QString &why)
    {
        m_refused << EntryFailure{Location(name.toStdString()), {why, {}}};
    }

    void showProgress()
    {
        if (m_queue.jobs.get().empty() || m_asking.open())
            return;
        const TransferJob &job = *m_queue.jobs.get().front();
        m_context.terminal.progress(QStringLiteral("%1  %2 %  %3")
                                        .arg(job.title())
                                        .arg(static_cast<int>(job.fraction() * 100))
                                        .arg(job.detail()));
    }

    CommandContext &m_context;
    const ConflictWish m_wish;
    MountWorkers m_workers;
    TransferQueue m_queue;
    TerminalAnswer m_asking;
    QEventLoop m_loop;
    EntryFailures m_refused;
};

QJsonObject answerOf(const FinishedTransfer &finished)
{
    QJsonArray steps;
    for (const TransferStep &step : finished.steps)
        steps.append(QJsonObject{{QStringLiteral("src"), toJson(step.src)},
                                 {QStringLiteral("dst"), toJson(step.dst)},
                                 {QStringLiteral("replace"), step.replace}});
    const TransferOutcome &outcome = finished.outcome;
    return {{QStringLiteral("steps"), steps},
            {QStringLiteral("bytes"), static_cast<qint64>(outcome.transferred.bytes)},
            {QStringLiteral("files"), static_cast<qint64>(outcome.transferred.files)},
            {QStringLiteral("failures"), QJsonArray::fromStringList(linesOf(outcome.errors))},
            {QStringLiteral("cancelled"), outcome.cancelled}};
}

ExitCode report(const CommandContext &context, const FinishedTransfer &finished)
{
    context.follow(movesOf(actionOf(finished.record)));
    const TransferOutcome &outcome = finished.outcome;
    for (const QString &line : linesOf(outcome.errors) + outcome.notes)
        context.terminal.message(printable(line));
    if (context.json())
        context.terminal.printJson(answerOf(finished));
    else if (!outcome.done.empty() || !outcome.emptied.empty())
        context.terminal.print(printable(titleOf(finished.record)) + u'.');
    if (outcome.cancelled) {
        context.terminal.message(Failure::cancelled().message);
        return ExitCode::Cancelled;
    }
    return outcome.errors.isEmpty() ? ExitCode::Done : ExitCode::Failed;
}

ExitCode runTransfer(CommandContext &context, TransferKind kind)
{
    const std::vector<std::string> &words = context.arguments.rest();
    if (words.size() < 2)
        return context.refuse(
            QStringLiteral("Was wohin? brellin %1 QUELLE… ZIEL")
                .arg(kind == TransferKind::Move ? QStringLiteral("verschieben") : QStringLiteral("kopieren")));
    const Result<ConflictWish> wish = conflictWish(context.arguments);
    if (!wish)
        return context.refuse(wish.error().message);
    TransferRequest request{{}, typedLocation(words.back()), kind, {}};
    std::transform(words.begin(), words.end() - 1, std::back_inserter(request.sources), typedLocation);
    std::error_code unknown;
    if (!std::filesystem::is_directory(request.destination, unknown))
        return context.refuse(QStringLiteral("„%1“ ist kein Ordner.").arg(printable(shown(Location(words.back())))));
    return report(context, TransferCommand(context, *wish).run(std::move(request)));
}

} // namespace

ExitCode runCopyCommand(CommandContext &context)
{
    return runTransfer(context, TransferKind::Copy);
}

ExitCode runMoveCommand(CommandContext &context)
{
    return runTransfer(context, TransferKind::Move);
}

} // namespace brellin
