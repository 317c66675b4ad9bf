#include "MailScanner/ElectronicInvoice.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

/// A Factur-X invoice as programs write it, with other parties, dates and totals around what is looked for.
QByteArray crossIndustry(const QByteArray &type = "380", const QByteArray &total = "1084.20",
                         const QByteArray &currency = "EUR")
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<rsm:CrossIndustryInvoice xmlns:rsm="urn:un:unece:uncefact:data:standard:CrossIndustryInvoice:100" xmlns:ram="r" xmlns:udt="u">
 <rsm:ExchangedDocument><ram:ID>R1</ram:ID><ram:TypeCode>)" +
           type +
           R"(</ram:TypeCode><ram:IssueDateTime><udt:DateTimeString format="102">20260228</udt:DateTimeString></ram:IssueDateTime></rsm:ExchangedDocument>
 <rsm:SupplyChainTradeTransaction>
  <ram:ApplicableHeaderTradeAgreement><ram:BuyerTradeParty><ram:Name>Käufer</ram:Name></ram:BuyerTradeParty>
   <ram:SellerTradeParty><ram:Name>Müller &amp; Söhne</ram:Name><ram:DefinedTradeContact><ram:PersonName>Anna</ram:PersonName></ram:DefinedTradeContact></ram:SellerTradeParty></ram:ApplicableHeaderTradeAgreement>
  <ram:ApplicableHeaderTradeSettlement><ram:InvoiceCurrencyCode>)" +
           currency +
           R"(</ram:InvoiceCurrencyCode><ram:SpecifiedTradePaymentTerms><ram:DueDateDateTime><udt:DateTimeString>20260330</udt:DateTimeString></ram:DueDateDateTime></ram:SpecifiedTradePaymentTerms>
   <ram:SpecifiedTradeSettlementHeaderMonetarySummation><ram:TaxBasisTotalAmount>911.09</ram:TaxBasisTotalAmount><ram:GrandTotalAmount>)" +
           total +
           R"(</ram:GrandTotalAmount><ram:GrandTotalAmount currencyID="USD">7</ram:GrandTotalAmount><ram:DuePayableAmount>84.20</ram:DuePayableAmount></ram:SpecifiedTradeSettlementHeaderMonetarySummation>
  </ram:ApplicableHeaderTradeSettlement></rsm:SupplyChainTradeTransaction></rsm:CrossIndustryInvoice>)";
}

QByteArray ubl(const QByteArray &root, const QByteArray &names)
{
    return "<" + root +
           R"( xmlns="urn:x" xmlns:cac="c" xmlns:cbc="b">
 <cac:OrderReference><cbc:IssueDate>2025-01-01</cbc:IssueDate></cac:OrderReference>
 <cbc:IssueDate>2026-03-01+01:00</cbc:IssueDate>
 <cbc:DocumentCurrencyCode>EUR</cbc:DocumentCurrencyCode>
  <cac:AccountingSupplierParty><cac:Party>)" +
           names +
           R"(</cac:Party></cac:AccountingSupplierParty>
 <cac:AccountingCustomerParty><cac:Party><cac:PartyName><cbc:Name>Käufer</cbc:Name></cac:PartyName></cac:Party></cac:AccountingCustomerParty>
 <cac:LegalMonetaryTotal><cbc:TaxInclusiveAmount currencyID="CHF">84.2</cbc:TaxInclusiveAmount><cbc:PayableAmount currencyID="CHF">1</cbc:PayableAmount></cac:LegalMonetaryTotal>
</)" + root +
           ">";
}

/// What is read; nothing if the document is refused.
ReceiptFacts factsOf(const QByteArray &xml)
{
    return readElectronicInvoice(xml).value_or(ReceiptFacts());
}

} // namespace

TEST(ElectronicInvoiceTest, readsSellerGrossTotalAndIssueDate)
{
    EXPECT_EQ(factsOf(crossIndustry()), (ReceiptFacts{u"Müller & Söhne"_qs, u"1.084,20 €"_qs, QDate(2026, 2, 28)}));
    EXPECT_EQ(factsOf(crossIndustry("380", "12", "USD")).amount, u"12,00 USD"_qs);
    QByteArray first = crossIndustry();
    first.replace("CrossIndustryInvoice", "CrossIndustryDocument");
    first.replace("rsm:ExchangedDocument", "rsm:HeaderExchangedDocument");
    first.replace("HeaderTradeSettlement", "SupplyChainTradeSettlement").replace("HeaderMonetary", "Monetary");
    EXPECT_EQ(factsOf(first), factsOf(crossIndustry())) << "ZUGFeRD 1";

    const QByteArray trade = "<cac:PartyName><cbc:Name>Kontor</cbc:Name></cac:PartyName>";
    const QByteArray legal = "<cac:PartyLegalEntity><cbc:RegistrationName>Kontor Nord GmbH</cbc:RegistrationName>"
                             "</cac:PartyLegalEntity>";
    EXPECT_EQ(factsOf(ubl("Invoice", legal + trade)), (ReceiptFacts{u"Kontor"_qs, u"84,20 CHF"_qs, QDate(2026, 3, 1)}));
    EXPECT_EQ(factsOf(ubl("Invoice", legal)).company, u"Kontor Nord GmbH"_qs);
}

TEST(ElectronicInvoiceTest, creditNotesAreNegative)
{
    EXPECT_EQ(factsOf(crossIndustry("381")).amount, u"-1.084,20 €"_qs);
    EXPECT_EQ(factsOf(crossIndustry("381", "-5.5")).amount, u"-5,50 €"_qs);
    EXPECT_EQ(factsOf(ubl("CreditNote", {})).amount, u"-84,20 CHF"_qs);
}

TEST(ElectronicInvoiceTest, leavesEmptyWhatIsNotReadable)
{
    EXPECT_EQ(factsOf(crossIndustry("380", "viel")).amount, QString());
    EXPECT_EQ(factsOf(crossIndustry("380", "1e9")).amount, QString());
    QByteArray noDate = crossIndustry();
    noDate.replace("20260228", "20261328");
    EXPECT_EQ(factsOf(noDate).date, std::nullopt);
    EXPECT_EQ(factsOf(crossIndustry("380", "5", "rm -rf")).amount, u"5,00"_qs);
}

TEST(ElectronicInvoiceTest, refusesOtherDocumentsEntitiesAndHugeOnes)
{
    EXPECT_FALSE(readElectronicInvoice("<html><body/></html>"));
    EXPECT_FALSE(readElectronicInvoice("kein XML"));
    EXPECT_FALSE(readElectronicInvoice({}));
    EXPECT_FALSE(readElectronicInvoice(crossIndustry().chopped(40))) << "cut off";
    const QByteArray entity =
        "<!DOCTYPE Invoice [<!ENTITY a \"aaaaaaaaaa\">]><Invoice><IssueDate>&a;</IssueDate></Invoice>";
    EXPECT_FALSE(readElectronicInvoice(entity));
    EXPECT_FALSE(readElectronicInvoice(QByteArray("<Invoice>").repeated(100'000)));
    EXPECT_FALSE(readElectronicInvoice(ubl("Invoice", QByteArray(mostInvoiceBytes, ' '))));
    EXPECT_TRUE(isInvoiceXml(u"ZUGFeRD-invoice.xml"_qs));
    EXPECT_FALSE(isInvoiceXml(u"daten.xml"_qs));
}
