#include "FileOperations/BatchRename.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "FileOperations/OperationTexts.h"
#include "FileOperations/ProgressFraction.h"
#include "FileOperations/RecordedAction.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brellin {

namespace {

QString failureText(const BatchRenameOutcome &outcome)
{
    QString text = operationTexts::renameStopped(*outcome.failure);
    for (const Location &place : outcome.notPutBack)
        text += QStringLiteral("\n„%1“ ließ sich nicht zurückbenennen.").arg(shownName(place));
    return text;
}

} // namespace

BatchRename::BatchRename(BatchRenameServices services, std::vector<Location> urls)
    : m_services(std::move(services))
    , m_urls(std::move(urls))
    , m_pool(abandonablePool())
{
    read();
}

BatchRename::~BatchRename() = default;

void BatchRename::setFields(const BatchRenameFields &changed)
{
    publish(fields, changed);
    const bool lacksDays = changed.mode == BatchRenameFields::Mode::Date && m_facts.days.empty();
    if (lacksDays && !m_reading.running() && m_factsKnown)
        read();
    plan();
}

/// Reads dates only in date mode, since that decodes every photo.
void BatchRename::read()
{
    const Days days = fields.get().mode == BatchRenameFields::Mode::Date ? Days::Read : Days::Skip;
    publish(reading, true);
    m_reading.start(
        *m_pool,
        [urls = m_urls, days, &decoder = m_services.decoder](JobControl &control) {
            return readRenameFacts(urls, days, decoder, control);
        },
        [this](RenameFacts facts) {
            m_facts = std::move(facts);
            m_factsKnown = true;
            publish(progress, std::optional<double>());
            publish(reading, false);
            setFields(fields.get());
        },
        [this](const JobControl &control) { publish(progress, progressFraction(control)); });
}

void BatchRename::plan()
{
    const bool dated = fields.get().mode == BatchRenameFields::Mode::Date;
    if (!m_factsKnown || (dated && m_facts.days.empty() && !m_urls.empty())) {
        publish(preview, BatchRenamePlan());
        return;
    }
    std::vector<BatchRenameEntry> entries;
    for (std::size_t i = 0; i < m_urls.size(); ++i)
        entries.push_back({m_urls[i], dated ? m_facts.days[i] : QDate()});
    publish(preview, planBatchRename(entries, fields.get(), m_facts.folders));
}

bool BatchRename::canStart() const
{
    const BatchRenamePlan &plan = preview.get();
    return !reading.get() && !running.get() && done.get().empty() && !plan.error &&
           std::ranges::any_of(plan.rows, &BatchRenameRow::changes);
}

void BatchRename::start()
{
    if (!canStart())
        return;
    std::vector<RenamePair> pairs;
    for (std::size_t i = 0; i < m_urls.size(); ++i)
        pairs.push_back({m_urls[i], preview.get().rows[i].to, m_facts.marks[i]});
    run(std::move(pairs), Direction::Forth);
}

void BatchRename::undo()
{
    if (running.get() || done.get().empty())
        return;
    std::vector<RenamePair> pairs;
    std::ranges::transform(done.get(), std::back_inserter(pairs), [](const UserAction::Entry &one) {
        return RenamePair{one.to, one.from, {one.state, one.created}};
    });
    run(std::move(pairs), Direction::Back);
}

void BatchRename::run(std::vector<RenamePair> pairs, Direction direction)
{
    publish(running, true);
    publish(error, std::optional<QString>());
    if (direction == Direction::Forth)
        m_step = QUuid::createUuid();
    const auto rename = direction == Direction::Forth ? renameBatchRecorded : takeBatchBack;
    m_renaming.start(
        *m_pool,
        [pairs = std::move(pairs), rename, step = m_step, &files = m_services.files, logs = m_services.renameLogs,
         records = m_services.records, mayChange = m_services.mayChange](JobControl &control) -> BatchRenameOutcome {
            const bool allowed = !mayChange || std::ranges::all_of(pairs, mayChange, &RenamePair::from);
            return allowed ? rename(pairs, files, logs, control, records, step)
                           : BatchRenameOutcome{{}, Failure{operationTexts::systemRefusal(), {}}, {}};
        },
        [this, direction](const BatchRenameOutcome &outcome) { finished(outcome, direction); },
        [this](const JobControl &control) { publish(progress, progressFraction(control)); });
}

void BatchRename::finished(const BatchRenameOutcome &outcome, Direction direction)
{
    publish(progress, std::optional<double>());
    publish(running, false);
    if (outcome.failure) {
        publish(error, std::optional(failureText(outcome)));
        return;
    }
    const QString text =
        direction == Direction::Forth ? QStringLiteral("%1 umbenannt.") : QStringLiteral("%1 zurückbenannt.");
    publish(status, text.arg(german().toString(static_cast<qlonglong>(outcome.done.size()))));
    if (direction == Direction::Forth) {
        m_services.undo.record({UserAction::Kind::BatchRename, outcome.done, false, m_step});
        publish(done, outcome.done);
        return;
    }
    m_services.undo.forget({UserAction::Kind::BatchRename, done.get(), false, m_step});
    publish(done, std::vector<UserAction::Entry>());
}

} // namespace brellin
