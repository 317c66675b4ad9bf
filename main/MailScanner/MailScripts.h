#pragma once

#include "MailScanner/MailApplication.h"

/// The AppleScripts that ask and move mail, and their answers. The texts are the protocol: they stay as they are.
namespace brellin::MailScripts {

/// A text as a literal of the script language: in double quotes, with backslashes before backslashes and quotes.
QString quoted(const QString &text);
/// The ids in portions that fit into one argument of a program.
std::vector<QStringList> portions(const QStringList &ids);

/// Runs `body` for each mailbox that is searched; an error in one mailbox does not end the loop.
QString boxLoop(const MailSearch &search, const QString &body);
QString listMailboxes();
QString queryMessages(const MailSearch &search);
QString listAttachments(const MailSearch &search, const QStringList &ids);
QString saveAttachments(const MailSearch &search, const QString &id, const QStringList &names, const Location &folder);
QString moveMessage(const MailSearch &search, const QString &id, const QString &archive);

/// Read what the scripts print. Malformed lines are skipped.
std::vector<MailBoxRef> readMailboxes(const QString &output);
std::vector<MailMessage> readMessages(const QString &output);
void readAttachments(const QString &output, std::map<QString, QStringList> &names);

} // namespace brellin::MailScripts
