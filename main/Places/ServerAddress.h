#pragma once

#include "Base/Result.h"

#include <QString>

namespace brellin {

/// The address of a server, or of a folder on it, as typed: smb, sftp, dav, davs, nfs or ftp, and also "\\nas\Musik".
class ServerAddress {
public:
    /// Any other address fails with a message that describes the valid forms.
    static Result<ServerAddress> parse(const QString &text);

    /// "smb://anna@nas/Musik", never including a password.
    const QString &text() const { return m_text; }
    const QString &scheme() const { return m_scheme; }
    /// "nas"
    const QString &host() const { return m_host; }
    /// The password contained in the typed address, for answering the server's question; never stored.
    const QString &password() const { return m_password; }
    /// "Musik auf nas", or "nas".
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
