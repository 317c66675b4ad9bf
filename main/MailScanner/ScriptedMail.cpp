#include "MailScanner/ScriptedMail.h"

#include "MailScanner/MailScripts.h"

namespace brellin {

namespace {

using std::chrono::minutes;

// Somewhat more than the scripts' own limits, which give the better message.
constexpr minutes listLimit{3};
constexpr minutes searchLimit{31};
constexpr minutes messageLimit{5};

bool isOk(const QString &output)
{
    return output.trimmed() == u"ok";
}

} // namespace

Result<QString> ScriptedMail::osascript(const QString &script, std::chrono::milliseconds limit,
                                        const JobControl *control)
{
    ProcessRequest request;
    request.program = "/usr/bin/osascript";
    request.arguments = {"-e", script.toStdString()};
    request.timeout = limit;
    const ProcessOutput output = TRY(m_processes.run(request, control));
    if (output.exitCode != 0)
        return failure(QString::fromUtf8(output.errors));
    return QString::fromUtf8(output.output);
}

Result<std::vector<MailBoxRef>> ScriptedMail::mailboxes(const JobControl *control)
{
    return MailScripts::readMailboxes(TRY(osascript(MailScripts::listMailboxes(), listLimit, control)));
}

Result<std::vector<MailMessage>> ScriptedMail::messages(const MailSearch &search, const JobControl *control)
{
    return MailScripts::readMessages(TRY(osascript(MailScripts::queryMessages(search), searchLimit, control)));
}

Result<std::map<QString, QStringList>> ScriptedMail::attachments(const MailSearch &search, const QStringList &ids,
                                                                 const JobControl *control)
{
    std::map<QString, QStringList> names;
    for (const QStringList &portion : MailScripts::portions(ids))
        MailScripts::readAttachments(
            TRY(osascript(MailScripts::listAttachments(search, portion), searchLimit, control)), names);
    return names;
}

Result<bool> ScriptedMail::save(const MailSearch &search, const QString &id, const QStringList &names,
                                const Location &folder, const JobControl *control)
{
    return isOk(TRY(osascript(MailScripts::saveAttachments(search, id, names, folder), messageLimit, control)));
}

Result<bool> ScriptedMail::move(const MailSearch &search, const QString &id, const QString &archive,
                                const JobControl *control)
{
    return isOk(TRY(osascript(MailScripts::moveMessage(search, id, archive), messageLimit, control)));
}

} // namespace brellin
