#include "Transfers/Transfer.h"

#include "Transfers/RecordedTransfer.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace brellin {

namespace {

/// Runs at once on its own thread; the caller does not wait.
template <class T>
typename FileCall<T>::Request longWork(const Location &where)
{
    return {where, FileCall<T>::Patience::None, MountWorkers::Turn::AtOnce};
}

} // namespace

Transfer::Transfer(TransferQueue &queue, const QUuid &id, TransferRequest request)
    : m_queue(queue)
    , m_id(id)
    , m_request(std::move(request))
    , m_job(std::make_shared<TransferJob>(TransferJob::Start{
          m_id, m_request.pane, m_request.kind, standardised(m_request.destination),
          shownName(standardised(m_request.destination)), static_cast<int>(m_request.sources.size())}))
{
}

Transfer::~Transfer()
{
    if (m_running.running())
        m_job->state->cancel();
}

void Transfer::start()
{
    const TransferServices services = m_queue.m_services;
    m_examining.start(
        services.workers, longWork<Result<Examination>>(m_request.destination),
        [services, request = m_request](const JobControl &control) {
            return examineTransfer(request, services, control);
        },
        [this](Result<Examination> found) { examined(std::move(found)); }, {});
}

void Transfer::examined(Result<Examination> found)
{
    if (!found) {
        TransferOutcome outcome;
        outcome.errors << EntryFailure{m_request.destination, found.error()};
        return end(std::move(outcome));
    }
    m_refused += found->refused;
    m_conflicts.emplace(std::move(found->sources), m_outcome.done.size());
    askAboutConflicts();
}

void Transfer::askAboutConflicts()
{
    if (m_conflicts->cancelled())
        return endCancelled();
    if (std::optional<ConflictRound::About> about = m_conflicts->question())
        return ask(std::move(*about));
    if (const std::optional<ExaminedSource> folder = m_conflicts->toMerge())
        return lookInto(*folder);
    m_merged.insert(m_merged.end(), m_conflicts->merged().begin(), m_conflicts->merged().end());
    m_putOff = m_conflicts->putOff();
    if (m_conflicts->decisions().empty() && m_merged.empty())
        return end({});
    plan();
}

void Transfer::lookInto(const ExaminedSource &folder)
{
    const TransferServices services = m_queue.m_services;
    m_lookingInto.start(
        services.workers, longWork<Result<ExaminedMerge>>(m_request.destination),
        [services, folder, request = m_request](const JobControl &control) {
            return examineMerge(request, folder, services, control);
        },
        [this](Result<ExaminedMerge> content) {
            if (!content)
                return endCancelled();
            m_refused += content->refused;
            m_conflicts->merge(std::move(*content));
            askAboutConflicts();
        },
        {});
    m_queue.publishAll();
}

void Transfer::plan()
{
    const TransferServices services = m_queue.m_services;
    m_planning.start(
        services.workers, longWork<std::vector<TransferStep>>(m_request.destination),
        [decisions = m_conflicts->decisions()](const JobControl &) { return stepsFor(decisions); },
        [this](std::vector<TransferStep> steps) { planned(std::move(steps)); }, {});
}

void Transfer::planned(std::vector<TransferStep> steps)
{
    m_steps = std::move(steps);
    m_job->plan(m_steps.size());
    const TransferServices services = m_queue.m_services;
    m_inspecting.start(
        services.workers, longWork<Result<Inspection>>(m_request.destination),
        [services, steps = m_steps, kind = m_request.kind](const JobControl &control) {
            return inspectSteps(steps, kind, services, control);
        },
        [this](Result<Inspection> inspection) { inspected(std::move(inspection)); }, {});
}

void Transfer::inspected(Result<Inspection> inspection)
{
    if (!inspection)
        return endCancelled();
    m_inspection = std::move(*inspection);
    if (std::optional<ObstacleQuestion> question = m_inspection.question()) {
        question->transferred = m_outcome.done.size();
        return ask(std::move(*question));
    }
    run();
}

void Transfer::answerObstacles(ObstacleChoice choice)
{
    if (choice == ObstacleChoice::Cancel)
        return endCancelled();
    if (choice == ObstacleChoice::LeaveOut)
        m_inspection = m_inspection.withoutHindered(m_steps);
    run();
}

void Transfer::run()
{
    m_job->begin(m_steps.size(), m_total += m_inspection.total());
    std::set<Location> known;
    std::ranges::transform(m_begun, std::inserter(known, known.end()), &TransferStep::src);
    std::ranges::copy_if(m_steps, std::back_inserter(m_begun),
                         [&](const TransferStep &step) { return !known.contains(step.src); });
    const TransferServices services = m_queue.m_services;
    m_running.start(
        services.workers, longWork<TransferOutcome>(m_request.destination),
        [services, id = m_id, steps = m_steps, kind = m_request.kind, state = m_job->state, sizes = m_inspection.sizes,
         merged = m_merged, open = OpenWork::begin(TransferState::controlOf(m_job->state))](const JobControl &) {
            return runRecorded(services, id, steps, kind, *state, sizes, merged);
        },
        [this](TransferOutcome outcome) { ran(std::move(outcome)); }, {});
    m_queue.publishAll();
}

/// Then asks about what was put off, and again about entries that changed since the user agreed.
void Transfer::ran(TransferOutcome outcome)
{
    std::set<Location> emptied;
    std::ranges::transform(outcome.emptied, std::inserter(emptied, emptied.end()), &MergedFolder::src);
    std::erase_if(m_merged, [&](const MergedFolder &folder) { return emptied.contains(folder.src); });
    m_outcome.add(std::move(outcome));
    std::vector<SourcePlace> open = std::exchange(m_putOff, {});
    for (const TransferStep &step : std::exchange(m_outcome.toAskAgain, {}))
        open.push_back({step.src, step.dst});
    if (open.empty() || m_outcome.cancelled)
        return end({});
    examineAgain(std::move(open));
}

void Transfer::examineAgain(std::vector<SourcePlace> places)
{
    const TransferServices services = m_queue.m_services;
    m_examining.start(
        services.workers, longWork<Result<Examination>>(m_request.destination),
        [services, places = std::move(places), request = m_request](const JobControl &control) {
            return brellin::examineAgain(request, places, services, control);
        },
        [this](Result<Examination> found) { examined(std::move(found)); }, {});
    m_queue.publishAll();
}

void Transfer::ask(ConflictRound::About about)
{
    m_question = TransferQuestion{QUuid::createUuid(), m_id, std::move(about)};
    m_queue.publishAll();
}

void Transfer::answer(const TransferAnswer &answer)
{
    const bool aboutObstacles = std::holds_alternative<ObstacleQuestion>(m_question->about);
    if (aboutObstacles != std::holds_alternative<ObstacleChoice>(answer))
        return;
    m_question.reset();
    if (aboutObstacles)
        return answerObstacles(std::get<ObstacleChoice>(answer));
    m_conflicts->answer(answer);
    askAboutConflicts();
}

void Transfer::cancel()
{
    // The run ends by itself and reports how far it got.
    if (m_running.running())
        return m_job->cancel();
    m_examining.drop();
    m_lookingInto.drop();
    m_planning.drop();
    m_inspecting.drop();
    endCancelled();
}

void Transfer::endCancelled()
{
    TransferOutcome outcome;
    outcome.cancelled = true;
    end(std::move(outcome));
}

void Transfer::end(TransferOutcome outcome)
{
    m_outcome.add(std::move(outcome));
    outcome = std::move(m_outcome);
    outcome.errors = m_refused + outcome.errors;
    FinishedTransfer finished;
    finished.record = {m_id,         m_request.kind, standardised(m_request.destination), m_queue.m_clock.now(),
                       outcome.done, outcome.emptied};
    finished.pane = m_request.pane;
    std::ranges::transform(m_request.sources, std::back_inserter(finished.sources), standardised);
    finished.outcome = std::move(outcome);
    finished.steps = m_begun;
    m_queue.ended(m_id, std::move(finished));
}

} // namespace brellin
