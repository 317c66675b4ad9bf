#pragma once

#include "MailScanner/MailApplication.h"
#include "System/ProcessRunner.h"

namespace brellin {

/// The mail application of macOS, asked by scripts that the system's script runner carries out.
class ScriptedMail : public MailApplication {
public:
    /// The runner must outlive this object.
    explicit ScriptedMail(ProcessRunner &processes) : m_processes(processes) {}

    Result<std::vector<MailBoxRef>> mailboxes(const JobControl *control) override;
    Result<std::vector<MailMessage>> messages(const MailSearch &search, const JobControl *control) override;
    Result<std::map<QString, QStringList>> attachments(const MailSearch &search, const QStringList &ids,
                                                       const JobControl *control) override;
    Result<bool> save(const MailSearch &search, const QString &id, const QStringList &names, const Location &folder,
                      const JobControl *control) override;
    Result<bool> move(const MailSearch &search, const QString &id, const QString &archive,
                      const JobControl *control) override;

    /// Runs a script and returns what it prints. Fails with its error output.
    Result<QString> osascript(const QString &script, std::chrono::milliseconds limit, const JobControl *control);

private:
    ProcessRunner &m_processes;
};

} // namespace brellin
