#pragma once

#include "Base/Location.h"
#include "MailScanner/MailBoxRef.h"

#include <vector>

namespace brellin {

/// How a mailbox lies on disk.
enum class MailLayout {
    Maildir, ///< a folder with a file per message in "cur" and "new"
    Mbox     ///< one file with all messages
};

/// A mailbox found on disk.
struct StoredMailbox {
    MailBoxRef ref;
    Location path;
    MailLayout layout = MailLayout::Maildir;
    /// Belongs to a program that keeps an index of it, which would not notice a message that moves.
    bool indexed = false;

    bool operator==(const StoredMailbox &) const = default;
};

/// Whether a folder is a mailbox with a file per message. One with only "new" or "cur" counts too: some programs omit
/// what they do not use.
bool isMaildir(const Location &folder);

/// The mailboxes of a tree of Maildirs, sorted by path: nested folders, Maildir++ (".A.B" below a mailbox is "A/B"),
/// and ".x.directory", which contains what lies below the mailbox "x". A mailbox that is the root itself is the INBOX.
/// Links are followed, each folder is read once.
std::vector<StoredMailbox> maildirsBelow(const Location &root, const QString &account);

/// The mailboxes of a tree of mbox files, sorted by path: "x.sbd" contains what lies below "x". Maildirs beside them
/// are found too. Index files are no mailboxes.
std::vector<StoredMailbox> mboxesBelow(const Location &root, const QString &account);

} // namespace brellin
