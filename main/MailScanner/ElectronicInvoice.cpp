#include "MailScanner/ElectronicInvoice.h"

#include "Base/German.h"
#include "Base/Graphemes.h"
#include "MailScanner/PlainText.h"

#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace brellin {

namespace {

/// The texts of the elements that are read.
struct InvoiceTexts {
    QString seller;
    QString registeredSeller;
    QString total;
    QString totalCurrency;
    QString currency;
    QString date;
    QString type;
};

struct WantedElement {
    QStringView path; ///< the end of "/Root/…/Element", in local names
    QString InvoiceTexts::*text;
};

// "ExchangedDocument" is "HeaderExchangedDocument" in ZUGFeRD 1. Other dates and names stand under other parents.
constexpr std::array wantedElements{
    WantedElement{u"ExchangedDocument/IssueDateTime/DateTimeString", &InvoiceTexts::date},
    WantedElement{u"ExchangedDocument/TypeCode", &InvoiceTexts::type},
    WantedElement{u"/SellerTradeParty/Name", &InvoiceTexts::seller},
    WantedElement{u"MonetarySummation/GrandTotalAmount", &InvoiceTexts::total},
    WantedElement{u"TradeSettlement/InvoiceCurrencyCode", &InvoiceTexts::currency},
    WantedElement{u"/Invoice/IssueDate", &InvoiceTexts::date},
    WantedElement{u"/CreditNote/IssueDate", &InvoiceTexts::date},
    WantedElement{u"/Invoice/InvoiceTypeCode", &InvoiceTexts::type},
    WantedElement{u"/Invoice/DocumentCurrencyCode", &InvoiceTexts::currency},
    WantedElement{u"/CreditNote/DocumentCurrencyCode", &InvoiceTexts::currency},
    WantedElement{u"/AccountingSupplierParty/Party/PartyName/Name", &InvoiceTexts::seller},
    WantedElement{u"/AccountingSupplierParty/Party/PartyLegalEntity/RegistrationName", &InvoiceTexts::registeredSeller},
    WantedElement{u"/LegalMonetaryTotal/TaxInclusiveAmount", &InvoiceTexts::total},
};

constexpr int mostSellerCharacters = 60;
/// An invoice's elements are at most a dozen deep.
constexpr qsizetype deepest = 50;

Failure unreadable(const QString &why)
{
    return Failure{QStringLiteral("Die E-Rechnung ist nicht lesbar: ") + why, {}};
}

bool isInvoiceRoot(QStringView name)
{
    return name == u"CrossIndustryInvoice" || name == u"CrossIndustryDocument" || name == u"Invoice" ||
           name == u"CreditNote";
}

/// The first text of each wanted element.
Result<InvoiceTexts> textsOf(const QByteArray &xml, QString &root)
{
    InvoiceTexts texts;
    QXmlStreamReader reader(xml);
    QStringList path;
    QString *wanted = nullptr;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            return failure(unreadable(QStringLiteral("Sie hat eine Dokumenttyp-Angabe.")));
        case QXmlStreamReader::StartElement: {
            if (path.size() == deepest)
                return failure(unreadable(QStringLiteral("Sie ist zu tief verschachtelt.")));
            path << path.value(path.size() - 1) + u'/' + reader.name().toString();
            const auto found = std::ranges::find_if(
                wantedElements, [&](const WantedElement &one) { return path.last().endsWith(one.path); });
            wanted = found == wantedElements.end() || !(texts.*found->text).isEmpty() ? nullptr : &(texts.*found->text);
            if (wanted == &texts.total)
                texts.totalCurrency = reader.attributes().value(QLatin1StringView("currencyID")).toString();
            break;
        }
        case QXmlStreamReader::Characters:
            if (wanted)
                *wanted += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            wanted = nullptr;
            path.removeLast();
            break;
        default:
            break;
        }
        if (path.size() == 1 && root.isEmpty())
            root = path.first().sliced(1);
    }
    if (reader.hasError())
        return failure(unreadable(QStringLiteral("Zeile %1.").arg(reader.lineNumber())));
    return texts;
}

bool isCreditNote(const QString &root, const QString &type)
{
    // UNTDID 1001: credit notes of goods, finance and self-billing.
    static const QStringList codes{u"381"_qs, u"83"_qs,  u"81"_qs,  u"261"_qs,
                                   u"262"_qs, u"296"_qs, u"308"_qs, u"396"_qs};
    return root == u"CreditNote" || codes.contains(type.trimmed());
}

/// "84,20 €", "84,20 USD"; empty for what is no number.
QString amountText(const InvoiceTexts &texts, bool credit)
{
    static const QRegularExpression decimal(QStringLiteral(R"(^[+-]?\d{1,12}(\.\d*)?$)"));
    static const QRegularExpression code(QStringLiteral("^[A-Z]{3}$"));
    const QString number = texts.total.trimmed();
    if (!decimal.match(number).hasMatch())
        return {};
    double value = number.toDouble();
    if (credit && value > 0)
        value = -value;
    QString currency = (texts.totalCurrency.isEmpty() ? texts.currency : texts.totalCurrency).trimmed();
    if (currency == u"EUR" || !code.match(currency).hasMatch())
        currency = currency.isEmpty() || currency == u"EUR" ? QStringLiteral("€") : QString();
    return (german().toString(value, 'f', 2) + u' ' + currency).trimmed();
}

std::optional<QDate> dateOf(const QString &text)
{
    // "20260301" (format 102 of CII), "2026-03-01" (UBL, perhaps with a time zone).
    const QString digits = text.trimmed().first(std::min<qsizetype>(10, text.trimmed().size())).remove(u'-');
    const QDate date =
        QDate::fromString(digits.first(std::min<qsizetype>(8, digits.size())), QStringLiteral("yyyyMMdd"));
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace

bool isInvoiceXml(const QString &name)
{
    static const QStringList names{u"factur-x.xml"_qs, u"zugferd-invoice.xml"_qs, u"xrechnung.xml"_qs};
    return names.contains(name, Qt::CaseInsensitive);
}

Result<ReceiptFacts> readElectronicInvoice(const QByteArray &xml)
{
    if (xml.size() > mostInvoiceBytes)
        return failure(unreadable(QStringLiteral("Sie ist zu groß.")));
    QString root;
    const InvoiceTexts texts = TRY(textsOf(xml, root));
    if (!isInvoiceRoot(root))
        return failure(unreadable(QStringLiteral("„%1“ ist keine Rechnung.").arg(plainText(root))));
    const QString seller = texts.seller.trimmed().isEmpty() ? texts.registeredSeller : texts.seller;
    return ReceiptFacts{firstGraphemes(plainText(seller), mostSellerCharacters).trimmed(),
                        amountText(texts, isCreditNote(root, texts.type)), dateOf(texts.date)};
}

} // namespace brellin
