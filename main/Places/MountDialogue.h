#pragma once

#include "Places/ServerAddress.h"
#include "Places/ServerQuestion.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace brellin {

/// Handles the prompts of `gio mount`, which asks line by line ("User [anna]: ", "Password: ", "Choice: "), and
/// combines related prompts into one question to the user.
class MountDialogue {
public:
    /// Asks the user; returns nullopt if the user cancels.
    using Ask = std::function<std::optional<ServerAnswer>(const ServerQuestion &)>;

    MountDialogue(ServerAddress address, Ask ask);

    /// The input for the output so far: empty if nothing was asked, nullopt to end the dialogue.
    std::optional<QByteArray> reply(const QByteArray &output);
    /// The user has cancelled.
    bool givenUp() const { return m_givenUp; }
    /// The user wants to connect as a guest, which needs a restart of the program with another option.
    bool guestWanted() const { return m_guestWanted; }

private:
    struct Prompt;
    ServerQuestion questionFor(const Prompt &prompt) const;
    bool beginsRound(const Prompt &prompt) const;
    bool ask(const Prompt &prompt);

    ServerAddress m_address;
    Ask m_ask;
    qsizetype m_heard = 0;
    std::optional<ServerAnswer> m_answer;
    QStringList m_answered; ///< prompts answered in this round
    int m_rounds = 0;       ///< number of questions for name and password
    bool m_givenUp = false;
    bool m_guestWanted = false;
};

} // namespace brellin
