#pragma once

#include <QString>

namespace brellin {

/// A mailbox of an account.
struct MailBoxRef {
    QString account;
    QString name;

    bool operator==(const MailBoxRef &) const = default;
    /// Account, a tab, name.
    QString id() const;
    bool isInbox() const;
};

} // namespace brellin
