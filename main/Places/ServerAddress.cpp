#include "Places/ServerAddress.h"

#include <QStringList>
#include <QUrl>

namespace brellin {

Result<ServerAddress> ServerAddress::parse(const QString &text)
{
    QString typed = text.trimmed();
    if (typed.startsWith(QStringLiteral("\\\\")))
        typed = QStringLiteral("smb:") + typed.replace(u'\\', u'/');
    QUrl url(typed, QUrl::TolerantMode);
    const QStringList known{QStringLiteral("smb"),  QStringLiteral("sftp"), QStringLiteral("dav"),
                            QStringLiteral("davs"), QStringLiteral("nfs"),  QStringLiteral("ftp")};
    if (!url.isValid() || !known.contains(url.scheme()) || url.host().isEmpty())
        return failure(QStringLiteral("So sieht die Adresse eines Servers aus: „smb://server/freigabe“. "
                                      "Möglich sind smb, sftp, dav, davs, nfs und ftp."));
    ServerAddress address;
    address.m_password = url.password(QUrl::FullyDecoded);
    url.setPassword({});
    url.setFragment({});
    address.m_scheme = url.scheme();
    address.m_host = url.host();
    address.m_path = url.path(QUrl::FullyDecoded);
    address.m_text = url.toString(QUrl::FullyEncoded);
    return address;
}

QString ServerAddress::name() const
{
    const QString last = m_path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    return last.isEmpty() ? m_host : QStringLiteral("%1 auf %2").arg(last, m_host);
}

} // namespace brellin
