#pragma once

#include "App/Terminal.h"
#include "Transfers/TransferQuestion.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brellin {

/// Asks the user a transfer's question on the terminal, without blocking the event loop. End of input chooses the last
/// button, which cancels.
class TerminalAnswer {
public:
    /// Whether standard input and standard error are a terminal.
    static bool possible();

    void ask(Terminal &terminal, QuestionText question, std::function<void(const TransferAnswer &)> answered);
    bool open() const { return m_notifier != nullptr; }
    void drop();

    /// Parses an answer: a button's number, followed by "a" for "all"; nullopt if invalid.
    static std::optional<TransferAnswer> chosen(const QuestionText &question, const QByteArray &line);

private:
    void show();
    void read();

    Terminal *m_terminal = nullptr;
    QuestionText m_question;
    std::function<void(const TransferAnswer &)> m_answered;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brellin
