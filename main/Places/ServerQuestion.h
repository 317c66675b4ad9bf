#pragma once

#include <QString>
#include <QStringList>

namespace brellin {

/// What a server wants to know before it lets somebody in.
struct ServerQuestion {
    QString server;  ///< "nas"
    QString message; ///< in the words of the system, which may be English
    bool user = false;
    bool domain = false;
    bool password = false;
    bool guestPossible = false;
    bool again = false; ///< the answer before was refused
    QString knownUser;  ///< what the system would take
    QString knownDomain;
    QStringList choices; ///< if there are any, one of them is the answer ("Log In Anyway", "Cancel Login")

    bool operator==(const ServerQuestion &) const = default;
};

/// What the user says to it.
struct ServerAnswer {
    QString user;
    QString domain;
    QString password;
    bool guest = false;
    qsizetype choice = 0; ///< index into `choices`
};

} // namespace brellin
