#include "Transfers/Screens/TransferScreens.h"

#include "Look/Attention.h"
#include "Look/YesNoSheet.h"
#include "Transfers/Leftovers.h"
#include "Transfers/Screens/LeftoverSheet.h"
#include "Transfers/Screens/QuestionSheet.h"
#include "Transfers/TransferLog.h"
#include "Transfers/TransferQueue.h"

#include <QApplication>
#include <QWindow>

#include <utility>

namespace brellin {

TransferScreens::TransferScreens(TransferQueue &queue, TransferServices services, const Clock &clock, QWidget *window)
    : QObject(window)
    , m_queue(queue)
    , m_services(std::move(services))
    , m_clock(clock)
    , m_window(window)
{
    m_queue.questions.observe(this, [this](const auto &) { follow(); });
    // The active window has its new value only after this signal.
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &TransferScreens::follow, Qt::QueuedConnection);
    follow();
}

bool TransferScreens::maySpeak() const
{
    return attentionTo(*m_window) != Attention::Elsewhere;
}

void TransferScreens::follow()
{
    const std::vector<TransferQuestion> &open = m_queue.questions.get();
    const bool asks = !open.empty() && maySpeak();
    if (m_sheet && (!asks || open.front().id != m_asked))
        std::exchange(m_sheet, nullptr)->withdraw();
    if (asks && !m_sheet)
        this->open(open.front());
}

void TransferScreens::open(const TransferQuestion &question)
{
    m_asked = question.id;
    m_sheet = makeQuestionSheet(question, m_window);
    connect(m_sheet, &QuestionSheet::answered, this, [this, id = question.id](const TransferAnswer &answer) {
        m_sheet = nullptr;
        m_queue.answer(id, answer);
    });
    m_sheet->ask();
    if (!QApplication::activeWindow())
        QApplication::alert(m_window);
}

void TransferScreens::visit(const Location &folder)
{
    const Location logs = m_services.logs;
    m_looking.start(
        m_services.workers, {folder, FileCall<std::vector<Location>>::Patience::None},
        [folder, logs, &clock = m_clock](const JobControl &) { return transferLeftovers(folder, logs, clock); },
        [this, folder](std::vector<Location> leftovers) {
            offer(std::move(leftovers));
            lookForUnfinishedMoves();
        },
        [] {});
}

void TransferScreens::offer(std::vector<Location> leftovers)
{
    std::erase_if(leftovers, [this](const Location &one) { return m_kept.contains(one); });
    // Another question is open: ask on the next visit.
    if (leftovers.empty() || m_offer || m_sheet)
        return;
    m_kept.insert(leftovers.begin(), leftovers.end());
    auto *const sheet = new LeftoverSheet(leftovers, m_window);
    m_offer = sheet;
    connect(sheet, &LeftoverSheet::removeWanted, this, [this, leftovers] { removeAll(leftovers); });
    sheet->ask();
}

void TransferScreens::removeAll(const std::vector<Location> &leftovers)
{
    m_removing.start(
        m_services.workers, {leftovers.front(), FileCall<EntryFailures>::Patience::None, MountWorkers::Turn::AtOnce},
        [leftovers, logs = m_services.logs, &clock = m_clock, &files = m_services.files](const JobControl &) {
            return removeTransferLeftovers(leftovers, logs, clock, files);
        },
        [this](const EntryFailures &failures) { say(failures); }, [] {});
}

/// Searches all logs, wherever the moves were: unrelated to the visited volume, and possibly slow.
void TransferScreens::lookForUnfinishedMoves()
{
    if (m_comparing.running() || m_offer || m_sheet)
        return;
    m_comparing.start(
        m_services.workers,
        {m_services.logs, FileCall<std::vector<UnfinishedMove>>::Patience::None, MountWorkers::Turn::AtOnce},
        [logs = m_services.logs, kept = m_queue.offeredMoves()](const JobControl &control) {
            removeFinishedLogs(logs);
            return unfinishedMoves(logs, &control, kept);
        },
        [this](std::vector<UnfinishedMove> moves) { offer(std::move(moves)); }, [] {});
}

/// One at a time; the next one on the next visit.
void TransferScreens::offer(std::vector<UnfinishedMove> moves)
{
    std::erase_if(moves, [this](const UnfinishedMove &one) { return m_queue.offeredMoves().contains(one.source); });
    if (moves.empty() || m_offer || m_sheet || !maySpeak())
        return;
    const UnfinishedMove move = moves.front();
    m_queue.offeredMoves().insert(move.source);
    auto *const sheet = new YesNoSheet(QStringLiteral("Unterbrochenes Verschieben"), move.question(),
                                       QStringLiteral("Verschieben abschließen"), ButtonKind::Danger, m_window,
                                       QStringLiteral("Später"));
    sheet->setObjectName(QStringLiteral("unfinishedMove"));
    m_offer = sheet;
    connect(sheet, &YesNoSheet::accepted, this, [this, move] { finish(move); });
    sheet->open();
}

void TransferScreens::finish(const UnfinishedMove &move)
{
    m_finishing.start(
        m_services.workers, {move.source, FileCall<EntryFailures>::Patience::None, MountWorkers::Turn::AtOnce},
        [move, &files = m_services.files](const JobControl &control) { return finishMove(move, files, &control); },
        [this](const EntryFailures &failures) { say(failures); }, [] {});
}

void TransferScreens::say(const EntryFailures &failures)
{
    if (!failures.isEmpty())
        Q_EMIT failed(linesOf(failures).join(u'\n'));
}

} // namespace brellin
