#pragma once

#include <QDate>
#include <QString>

#include <optional>

namespace brellin {

/// What is read from a receipt. Empty: not known.
struct ReceiptFacts {
    QString company;
    QString amount; ///< "84,20 €"; negative for a credit note
    std::optional<QDate> date;

    bool operator==(const ReceiptFacts &) const = default;
    bool isEmpty() const { return company.isEmpty() && amount.isEmpty() && !date; }
};

/// The instructions of the language model, and its prompt: sender, subject and the first 2,500 characters of the document.
QString receiptInstructions();
QString receiptPrompt(const QString &text, const QString &subject, const QString &sender);

/// Reads the model's answer, "Firma | Betrag | Datum". It stems from a stranger's document: what is no amount stays
/// empty, and so does a date more than a month after or three years before the mail's.
ReceiptFacts readReceiptAnswer(const QString &answer, const QDate &mailDate);

} // namespace brellin
