#include "MailScanner/MailScripts.h"

#include "Base/German.h"

#include <QCollator>
#include <QDateTime>

#include <algorithm>

namespace brellin::MailScripts {

namespace {

/// The arguments of a program may have 1 MB on macOS. Ids make up nearly all of a script.
constexpr qsizetype mostIdBytes = 400'000;

const QString query = QStringLiteral("set n to count of (messages of b whose date received > cutoff)\n"
                                     "if n > 0 then\n"
                                     "    set ids to message id of (messages of b whose date received > cutoff)\n"
                                     "    set subs to subject of (messages of b whose date received > cutoff)\n"
                                     "    set snds to sender of (messages of b whose date received > cutoff)\n"
                                     "    set dts to date received of (messages of b whose date received > cutoff)\n"
                                     "    repeat with i from 1 to (count of ids)\n"
                                     "        set out to out & (item i of ids) & tab & (item i of subs) & tab & (item "
                                     "i of snds) & tab & ((item i of dts) "
                                     "as «class isot» as string) & tab & (name of b) & tab & (name of acc) & linefeed\n"
                                     "    end repeat\n"
                                     "end if");

const QString attachmentNames = QStringLiteral("set ms to (messages of b whose date received > cutoff)\n"
                                               "set ids to message id of (messages of b whose date received > cutoff)\n"
                                               "repeat with i from 1 to (count of ids)\n"
                                               "    if wanted contains (item i of ids) then\n"
                                               "        set names to \"\"\n"
                                               "        repeat with a in mail attachments of (item i of ms)\n"
                                               "            set names to names & (name of a) & \"/\"\n"
                                               "        end repeat\n"
                                               "        set out to out & (item i of ids) & tab & names & linefeed\n"
                                               "    end if\n"
                                               "end repeat");

QString escaped(QString text)
{
    return text.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
}

/// The literals of a list, without its braces.
QString literals(const QStringList &texts)
{
    QStringList all;
    for (const QString &text : texts)
        all << quoted(text);
    return all.join(QStringLiteral(", "));
}

QString selectedPairs(const QSet<QString> &selection)
{
    QStringList ids(selection.begin(), selection.end());
    ids.sort();
    QStringList pairs;
    for (const QString &id : ids) {
        if (const QStringList parts = id.split(u'\t'); parts.size() == 2)
            pairs << u'{' + literals(parts) + u'}';
    }
    return pairs.join(QStringLiteral(", "));
}

QString defaultCondition(const QStringList &extraFolders)
{
    QStringList conditions;
    for (const QString &name : QStringList{u"INBOX"_qs, u"Posteingang"_qs, u"Inbox"_qs} + extraFolders)
        conditions << QStringLiteral("name is ") + quoted(name);
    return conditions.join(QStringLiteral(" or "));
}

QString cutoff(const MailSearch &search)
{
    return QStringLiteral("set cutoff to (current date) - (%1 * days)\n").arg(search.days);
}

/// A script that collects `out` from all mailboxes.
QString collecting(const MailSearch &search, const QString &body)
{
    return QStringLiteral("set out to \"\"\nwith timeout of 1800 seconds\ntell application \"Mail\"\n    ") +
           boxLoop(search, body) + QStringLiteral("\nend tell\nend timeout\nreturn out");
}

/// A script that ends with the first mailbox that has the message.
QString seeking(const MailSearch &search, const QString &body)
{
    return QStringLiteral("tell application \"Mail\"\n    ") + boxLoop(search, body) +
           QStringLiteral("\nend tell\nreturn \"nicht gefunden\"");
}

} // namespace

QString quoted(const QString &text)
{
    return u'"' + escaped(text) + u'"';
}

std::vector<QStringList> portions(const QStringList &ids)
{
    std::vector<QStringList> all;
    qsizetype bytes = mostIdBytes;
    for (const QString &id : ids) {
        const qsizetype more = quoted(id).toUtf8().size() + 2;
        if (bytes + more > mostIdBytes) {
            all.emplace_back();
            bytes = 0;
        }
        bytes += more;
        all.back() << id;
    }
    return all;
}

QString boxLoop(const MailSearch &search, const QString &body)
{
    if (search.selectedBoxes)
        return QStringLiteral("repeat with pr in {") + selectedPairs(*search.selectedBoxes) +
               QStringLiteral("}\n    try\n        set acc to account (item 1 of pr)\n"
                              "        set b to mailbox (item 2 of pr) of acc\n        ") +
               body + QStringLiteral("\n    end try\nend repeat");
    return QStringLiteral("repeat with acc in accounts\n    try\n        set boxes to (mailboxes of acc whose ") +
           defaultCondition(search.extraFolders) +
           QStringLiteral(")\n    on error\n        set boxes to {}\n    end try\n    repeat with b in boxes\n"
                          "        try\n            ") +
           body + QStringLiteral("\n        end try\n    end repeat\nend repeat");
}

QString listMailboxes()
{
    return QStringLiteral("set out to \"\"\n"
                          "with timeout of 120 seconds\n"
                          "tell application \"Mail\"\n"
                          "    repeat with acc in accounts\n"
                          "        if enabled of acc then\n"
                          "            try\n"
                          "                set nms to name of mailboxes of acc\n"
                          "                repeat with nm in nms\n"
                          "                    set out to out & (name of acc) & tab & nm & linefeed\n"
                          "                end repeat\n"
                          "            end try\n"
                          "        end if\n"
                          "    end repeat\n"
                          "end tell\n"
                          "end timeout\n"
                          "return out");
}

QString queryMessages(const MailSearch &search)
{
    return cutoff(search) + collecting(search, query);
}

QString listAttachments(const MailSearch &search, const QStringList &ids)
{
    return cutoff(search) + QStringLiteral("set wanted to {") + literals(ids) + QStringLiteral("}\n") +
           collecting(search, attachmentNames);
}

QString saveAttachments(const MailSearch &search, const QString &id, const QStringList &names, const Location &folder)
{
    return seeking(search, QStringLiteral("set ms to (messages of b whose message id is \"") + escaped(id) +
                               QStringLiteral("\")\nrepeat with m in ms\n"
                                              "    repeat with a in mail attachments of m\n"
                                              "        set n to name of a\n"
                                              "        if {") +
                               literals(names) +
                               QStringLiteral("} contains n then\n            save a in POSIX file (\"") +
                               escaped(shown(folder)) +
                               QStringLiteral("/\" & n)\n        end if\n    end repeat\n    return \"ok\"\n"
                                              "end repeat"));
}

QString moveMessage(const MailSearch &search, const QString &id, const QString &archive)
{
    const QString box = escaped(archive);
    return seeking(search, QStringLiteral("set ms to (messages of b whose message id is \"") + escaped(id) +
                               QStringLiteral("\")\nif (count of ms) > 0 then\n    if not (exists mailbox \"") + box +
                               QStringLiteral("\" of acc) then make new mailbox with properties {name:\"") + box +
                               QStringLiteral("\"} at acc\n    move (item 1 of ms) to mailbox \"") + box +
                               QStringLiteral("\" of acc\n    return \"ok\"\nend if"));
}

std::vector<MailBoxRef> readMailboxes(const QString &output)
{
    std::vector<MailBoxRef> boxes;
    QStringList accounts;
    for (const QString &line : output.split(u'\n')) {
        const QStringList fields = line.split(u'\t');
        if (fields.size() != 2)
            continue;
        boxes.push_back({fields[0], fields[1]});
        if (!accounts.contains(fields[0]))
            accounts << fields[0];
    }
    QCollator names(german());
    names.setNumericMode(true);
    names.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(boxes, [&](const MailBoxRef &a, const MailBoxRef &b) {
        if (a.account != b.account)
            return accounts.indexOf(a.account) < accounts.indexOf(b.account);
        if (a.isInbox() || b.isInbox())
            return a.isInbox() && !b.isInbox();
        return names.compare(a.name, b.name) < 0;
    });
    return boxes;
}

std::vector<MailMessage> readMessages(const QString &output)
{
    std::vector<MailMessage> messages;
    for (const QString &line : output.split(u'\n')) {
        const QStringList fields = line.split(u'\t');
        const QDateTime received = QDateTime::fromString(fields.value(3), Qt::ISODate); // local time
        if (fields.size() < 5 || !received.isValid())
            continue;
        messages.push_back({fields[0], fields[1], fields[2], instantFromMilliseconds(received.toMSecsSinceEpoch()),
                            MailBoxRef{fields.value(5), fields[4]}});
    }
    return messages;
}

void readAttachments(const QString &output, std::map<QString, QStringList> &names)
{
    for (const QString &line : output.split(u'\n')) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab >= 0)
            names.insert_or_assign(line.first(tab), line.sliced(tab + 1).split(u'/', Qt::SkipEmptyParts));
    }
}

} // namespace brellin::MailScripts
