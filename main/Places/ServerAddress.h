#pragma once

#include "Base/Result.h"

#include <QString>

namespace brellin {

/// The address of a server or a folder on it, as the user typed it: smb, sftp, dav, davs, nfs or ftp, also "\\nas\Musik".
class ServerAddress {
public:
    /// Anything else is a failure that says what is wanted.
    static Result<ServerAddress> parse(const QString &text);

    /// "smb://anna@nas/Musik", never with a password.
    const QString &text() const { return m_text; }
    const QString &scheme() const { return m_scheme; }
    /// "nas"
    const QString &host() const { return m_host; }
    /// The password that stood in what was typed, to answer the server's question with; stored nowhere.
    const QString &password() const { return m_password; }
    /// "Musik auf nas", or "nas"
    QString name() const;

private:
    ServerAddress() = default;

    QString m_text;
    QString m_scheme;
    QString m_host;
    QString m_path;
    QString m_password;
};

} // namespace brellin
