#include "App/TerminalAnswer.h"

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace brellin {

bool TerminalAnswer::possible()
{
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

void TerminalAnswer::ask(Terminal &terminal, QuestionText question,
                         std::function<void(const TransferAnswer &)> answered)
{
    m_terminal = &terminal;
    m_question = std::move(question);
    m_answered = std::move(answered);
    m_notifier = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { read(); });
    show();
}

void TerminalAnswer::drop()
{
    // We may be inside its signal, so delete it later.
    if (m_notifier)
        m_notifier.release()->deleteLater();
}

void TerminalAnswer::show()
{
    m_terminal->message(printable(m_question.message) + QStringLiteral("."));
    for (const QString &line : m_question.informative.split(u'\n', Qt::SkipEmptyParts))
        m_terminal->message(QStringLiteral("  ") + printable(line));
    if (!m_question.hint.isEmpty())
        m_terminal->message(printable(m_question.hint));
    QString choices;
    for (std::size_t i = 0; i < m_question.buttons.size(); ++i)
        choices += QStringLiteral("  [%1] %2").arg(i + 1).arg(m_question.buttons[i].title);
    if (!m_question.forAll.isEmpty())
        choices += QStringLiteral("  (mit „a“ dahinter: ") + m_question.forAll + u')';
    m_terminal->message(choices);
}

std::optional<TransferAnswer> TerminalAnswer::chosen(const QuestionText &question, const QByteArray &line)
{
    QByteArray word = line.trimmed();
    const bool forAll = word.endsWith('a') && !question.forAll.isEmpty();
    if (forAll)
        word.chop(1);
    bool isNumber = false;
    const qsizetype number = word.toInt(&isNumber);
    if (!isNumber || number < 1 || number > static_cast<qsizetype>(question.buttons.size()))
        return std::nullopt;
    TransferAnswer answer = question.buttons[static_cast<std::size_t>(number - 1)].answer;
    if (ConflictAnswer *const conflict = std::get_if<ConflictAnswer>(&answer))
        conflict->forAll = forAll;
    return answer;
}

void TerminalAnswer::read()
{
    // A terminal delivers one line at a time.
    std::array<char, 256> piece{};
    const ssize_t length = ::read(STDIN_FILENO, piece.data(), piece.size());
    if (length < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    // Error or end of input: the terminal has been closed.
    const std::optional<TransferAnswer> answer =
        length <= 0 ? m_question.buttons.back().answer : chosen(m_question, QByteArray(piece.data(), length));
    if (!answer)
        return show();
    const auto answered = m_answered;
    drop();
    answered(*answer);
}

} // namespace brellin
