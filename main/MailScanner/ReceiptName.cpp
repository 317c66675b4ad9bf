#include "MailScanner/ReceiptName.h"

#include "Base/German.h"
#include "Base/Graphemes.h"
#include "MailScanner/PlainText.h"

#include <QUrl>

namespace brellin {

namespace {

constexpr int mostSubjectCharacters = 40;

struct Address {
    QString display;
    QString mailbox; ///< "name@domain"; empty if there is none
};

QString unquoted(QString display)
{
    display = display.trimmed();
    if (display.size() >= 2 && display.startsWith(u'"') && display.endsWith(u'"'))
        display = display.sliced(1, display.size() - 2);
    display.replace(QLatin1StringView("\\\""), QLatin1StringView("\""))
        .replace(QLatin1StringView("\\\\"), QLatin1StringView("\\"));
    return plainText(display.remove(u'"'));
}

/// "Name <address>", "address (Name)" or either alone.
Address parsed(const QString &sender)
{
    const qsizetype open = sender.lastIndexOf(u'<');
    if (open >= 0)
        return {unquoted(sender.first(open)), sender.mid(open + 1).section(u'>', 0, 0).trimmed()};
    const qsizetype comment = sender.indexOf(u'(');
    if (const QString before = sender.section(u'(', 0, 0).trimmed(); comment > 0 && before.contains(u'@'))
        return {unquoted(sender.mid(comment + 1).section(u')', 0, 0)), before};
    return sender.contains(u'@') ? Address{{}, sender.trimmed()} : Address{unquoted(sender), {}};
}

/// Second levels under which registries of countries sell names: the word before them is the owner's.
bool isRegistrysLevel(const QString &label, const QString &country)
{
    static const QStringList levels{u"co"_qs, u"com"_qs, u"org"_qs, u"net"_qs, u"ac"_qs,
                                    u"or"_qs, u"ne"_qs,  u"gv"_qs,  u"gov"_qs, u"edu"_qs};
    return country.size() == 2 && levels.contains(label);
}

QString mainWordOf(const QString &mailbox)
{
    const QString domain = QUrl::fromAce(mailbox.section(u'@', -1).toLower().toLatin1());
    QStringList labels = domain.split(u'.', Qt::SkipEmptyParts);
    if (labels.size() > 1) {
        const QString country = labels.takeLast();
        if (labels.size() > 1 && isRegistrysLevel(labels.last(), country))
            labels.removeLast();
    }
    QString word = plainText(labels.value(labels.size() - 1));
    return word.isEmpty() ? word : word.first(1).toUpper() + word.sliced(1);
}

QString joined(QStringList words)
{
    words.removeAll(QString());
    return plainName(words.join(u' '));
}

} // namespace

QString senderName(const QString &sender)
{
    const Address address = parsed(sender);
    if (!address.display.isEmpty() && !address.display.contains(u'@'))
        return address.display;
    const QString word = mainWordOf(address.mailbox.isEmpty() ? address.display : address.mailbox);
    return word.isEmpty() ? plainText(sender) : word;
}

QDate receiptDay(const MailHit &hit, const ReceiptFacts &facts)
{
    return facts.date.value_or(localDay(hit.date));
}

QString receiptName(const MailHit &hit, const ReceiptFacts &facts)
{
    const QString day = receiptDay(hit, facts).toString(Qt::ISODate);
    const QString sender = senderName(hit.sender);
    if (!facts.company.isEmpty() || !facts.amount.isEmpty())
        return joined({day, facts.company.isEmpty() ? sender : facts.company, facts.amount});
    const QString subject = firstGraphemes(plainText(hit.subject), mostSubjectCharacters);
    return joined({day, sender, subject.isEmpty() ? QString() : u"– "_qs + subject});
}

} // namespace brellin
