#include "MailScanner/ReceiptFiles.h"

#include "Base/Location.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

bool isReceiptType(const QString &name)
{
    static const QStringList types{u"pdf"_qs, u"jpg"_qs, u"jpeg"_qs, u"png"_qs, u"heic"_qs};
    return types.contains(name.section(u'.', -1).toLower()) && name.contains(u'.');
}

/// Whether the name says that it is something else. Composed, since some mail programs write "ä" in two characters.
bool isOther(const QString &name)
{
    static const std::array others{u"agb"_qs,
                                   u"nutzungsbedingungen"_qs,
                                   u"geschäftsbedingungen"_qs,
                                   u"datenschutz"_qs,
                                   u"widerruf"_qs,
                                   u"terms"_qs,
                                   u"privacy"_qs,
                                   u"logo"_qs,
                                   u"signature"_qs,
                                   u"banner"_qs};
    const QString lower = name.normalized(QString::NormalizationForm_C).toLower();
    return std::ranges::any_of(others, [&](const QString &word) { return lower.contains(word); });
}

} // namespace

QStringList receiptFiles(const QStringList &names)
{
    QStringList kept = names;
    kept.removeIf([](const QString &name) { return !isReceiptType(name) || isOther(name); });
    QStringList pdfs = kept;
    pdfs.removeIf([](const QString &name) { return !name.endsWith(u".pdf", Qt::CaseInsensitive); });
    if (!pdfs.isEmpty())
        return pdfs;
    kept.removeIf([](const QString &name) {
        return name.startsWith(u"image0", Qt::CaseInsensitive) || name.startsWith(u"outlook", Qt::CaseInsensitive);
    });
    return kept;
}

} // namespace brellin
