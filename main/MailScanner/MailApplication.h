#pragma once

#include "Base/Instant.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "MailScanner/MailBoxRef.h"

#include <QSet>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// A message found by a query.
struct MailMessage {
    QString id;
    QString subject;
    QString sender;
    Instant received{};
    MailBoxRef box;

    bool operator==(const MailMessage &) const = default;
};

/// Where to look for messages, and how far back.
struct MailSearch {
    int days = 90;
    std::optional<QSet<QString>> selectedBoxes; ///< ids; nullopt: every inbox and the extra folders
    QStringList extraFolders;
};

/// Port to the user's mail as the mail application on this machine knows it: never a server, never a password. Blocking:
/// call on workers only, one call at a time.
class MailApplication {
public:
    virtual ~MailApplication() = default;

    /// The mailboxes of all accounts: accounts in their own order, inboxes first, then by name.
    virtual Result<std::vector<MailBoxRef>> mailboxes(const JobControl *control) = 0;
    /// The messages received within the search's days; one that lies in two mailboxes comes twice.
    virtual Result<std::vector<MailMessage>> messages(const MailSearch &search, const JobControl *control) = 0;
    /// The names of the attachments of these messages, by message id. A message that is gone is left out.
    virtual Result<std::map<QString, QStringList>> attachments(const MailSearch &search, const QStringList &ids,
                                                               const JobControl *control) = 0;
    /// Saves the attachments with these names into `folder`. Returns false if the message is gone.
    virtual Result<bool> save(const MailSearch &search, const QString &id, const QStringList &names,
                              const Location &folder, const JobControl *control) = 0;
    /// Moves a message into the mailbox `archive` of its account, which is created if missing. Returns false if the
    /// message is gone.
    virtual Result<bool> move(const MailSearch &search, const QString &id, const QString &archive,
                              const JobControl *control) = 0;
};

} // namespace brellin
