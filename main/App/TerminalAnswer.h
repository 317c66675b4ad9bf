#pragma once

#include "App/Terminal.h"
#include "Transfers/TransferQuestion.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brellin {

/// Asks the person at the terminal a transfer's question, while the event loop goes on. The end of input answers with the last
/// button, which cancels.
class TerminalAnswer {
public:
    /// Whether somebody is there to answer.
    static bool possible();

    void ask(Terminal &terminal, QuestionText question, std::function<void(const TransferAnswer &)> answered);
    bool open() const { return m_notifier != nullptr; }
    void drop();

    /// What a typed line chooses: the number of a button, with "a" behind it for all; nothing where it means neither.
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
