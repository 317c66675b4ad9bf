#include "MailScanner/ReceiptFacts.h"

#include "Base/Graphemes.h"
#include "MailScanner/PlainText.h"

#include <QRegularExpression>

namespace brellin {

namespace {

constexpr int mostDocumentCharacters = 2500;
constexpr int mostCompanyCharacters = 60;

/// An amount with at most one currency, before or behind it.
QString amountIn(const QString &piece)
{
    static const QRegularExpression amount(
        QStringLiteral(R"(^(?:(?:€|\$|£|[A-Z]{3})\s?)?[-−+]?(?:\d{1,3}(?:[. ']\d{3})+|\d{1,9})(?:[.,]\d{1,2})?)"
                       R"((?:\s?(?:€|\$|£|[A-Z]{3}|Euro))?$)"));
    return amount.match(piece).hasMatch() ? piece : QString();
}

std::optional<QDate> dateIn(const QString &piece, const QDate &mailDate)
{
    const QDate date = QDate::fromString(piece, QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid() || date > mailDate.addMonths(1) || date < mailDate.addYears(-3))
        return std::nullopt;
    return date;
}

} // namespace

QString receiptInstructions()
{
    return QStringLiteral("Du liest Rechnungen und Zahlungsbelege. Antworte ausschließlich in einer Zeile im Format:\n"
                          "Firma | Betrag | Datum\n"
                          "Firma = kurzer Name des Ausstellers. Betrag = Gesamtbetrag mit Komma und €-Zeichen, z. B. "
                          "84,20 €. Datum = JJJJ-MM-TT.\n"
                          "Unbekanntes leer lassen. Keine Erklärung.");
}

QString receiptPrompt(const QString &text, const QString &subject, const QString &sender)
{
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"), QRegularExpression::UseUnicodePropertiesOption);
    const QString document = QString(text).replace(whiteSpace, QStringLiteral(" "));
    return QStringLiteral("Absender: ") + sender + QStringLiteral("\nBetreff: ") + subject +
           QStringLiteral("\nBeleg (Auszug): ") + firstGraphemes(document, mostDocumentCharacters);
}

ReceiptFacts readReceiptAnswer(const QString &answer, const QDate &mailDate)
{
    const QStringList pieces = answer.section(u'\n', 0, 0).split(u'|');
    const auto piece = [&](qsizetype index) { return plainText(pieces.value(index)); };
    return {firstGraphemes(piece(0), mostCompanyCharacters).trimmed(), amountIn(piece(1)), dateIn(piece(2), mailDate)};
}

} // namespace brellin
