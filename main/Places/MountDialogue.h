#pragma once

#include "Places/ServerAddress.h"
#include "Places/ServerQuestion.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace brellin {

/// The talk with `gio mount`, which asks line by line ("User [anna]: ", "Password: ", "Choice: "), while a person is asked once
/// for all that belongs together.
class MountDialogue {
public:
    /// Asks the person; nothing where he does not want to go on.
    using Ask = std::function<std::optional<ServerAnswer>(const ServerQuestion &)>;

    MountDialogue(ServerAddress address, Ask ask);

    /// The bytes to be sent after this output: none where nothing was asked, nothing where the talk is over.
    std::optional<QByteArray> reply(const QByteArray &output);
    /// The person gave up.
    bool givenUp() const { return m_givenUp; }
    /// The person wants to come in as a guest, which is said when the program is started.
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
    QStringList m_answered; ///< prompts of this round
    int m_rounds = 0;       ///< questions for name and password
    bool m_givenUp = false;
    bool m_guestWanted = false;
};

} // namespace brellin
