#include "MailScanner/MailBoxRef.h"

namespace brellin {

QString MailBoxRef::id() const
{
    return account + u'\t' + name;
}

bool MailBoxRef::isInbox() const
{
    return name == u"INBOX" || name == u"Posteingang" || name == u"Inbox";
}

} // namespace brellin
