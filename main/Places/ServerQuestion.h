#pragma once

#include <QString>
#include <QStringList>

namespace brellin {

/// What a server asks before it grants access.
struct ServerQuestion {
    QString server;  ///< "nas"
    QString message; ///< the system's text, possibly in English
    bool user = false;
    bool domain = false;
    bool password = false;
    bool guestPossible = false;
    bool again = false; ///< the previous answer was refused
    QString knownUser;  ///< the system's default
    QString knownDomain;
    QStringList choices; ///< if not empty, the answer is one of them ("Log In Anyway", "Cancel Login")

    bool operator==(const ServerQuestion &) const = default;
};

/// The user's answer.
struct ServerAnswer {
    QString user;
    QString domain;
    QString password;
    bool guest = false;
    qsizetype choice = 0; ///< index into `choices`
};

} // namespace brellin
