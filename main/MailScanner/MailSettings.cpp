#include "MailScanner/MailSettings.h"

#include "Base/CommaList.h"
#include "Base/Edition.h"
#include "System/PlainSetting.h"

#include <algorithm>

namespace brellin {

namespace {

/// What a new installation begins with.
MailSettings usualSettings(const KnownFolders &folders)
{
    MailSettings usual;
    const bool tidewell = Edition::tidewell;
    usual.extraFolders = tidewell ? QString() : QStringLiteral("01_Rechnungen, 00_Buchungen");
    usual.privatePath = textOf(receiptBase(folders));
    usual.businessPath = textOf(receiptBase(folders) / "Geschäftlich");
    usual.businessAccounts = tidewell ? QString() : QStringLiteral("Kessel-Werk");
    usual.businessSenders =
        tidewell ? QStringLiteral("Google Ads, Meta, Microsoft, Adobe, Shopify, Apple Developer")
                 : QStringLiteral("Meta, Facebook, Google Ads, Google Payments, INWX, Anthropic, Shopify, Canva, "
                                  "Supabase, GitHub, Apple Developer");
    usual.archiveMailbox = QStringLiteral("Belege abgelegt");
    return usual;
}

std::optional<QSet<QString>> storedSelection(const UserDefaults &defaults)
{
    if (!defaults.value(MailKeys::selectedBoxes))
        return std::nullopt;
    const QStringList ids = plainSetting(defaults, MailKeys::selectedBoxes, QStringList());
    return QSet<QString>(ids.begin(), ids.end());
}

} // namespace

const Location &receiptBase(const KnownFolders &folders)
{
    return folders.eigeneDateien ? *folders.eigeneDateien : folders.dir(StandardFolder::Documents);
}

MailSettings MailSettings::read(const UserDefaults &defaults, const KnownFolders &folders)
{
    const MailSettings usual = usualSettings(folders);
    const auto text = [&](const QString &key, const QString &otherwise) {
        return plainSetting(defaults, key, otherwise);
    };
    MailSettings stored;
    stored.days = plainSetting(defaults, MailKeys::days, usual.days, 1, 3650);
    stored.aiNaming = plainSetting(defaults, MailKeys::aiNaming, usual.aiNaming);
    stored.extraFolders = text(MailKeys::extraFolders, usual.extraFolders);
    stored.enabled = plainSetting(defaults, MailKeys::enabled, usual.enabled);
    stored.privatePath = text(MailKeys::privatePath, usual.privatePath);
    stored.businessPath = text(MailKeys::businessPath, usual.businessPath);
    stored.businessAccounts = text(MailKeys::businessAccounts, usual.businessAccounts);
    stored.businessSenders = text(MailKeys::businessSenders, usual.businessSenders);
    stored.moveAfterSave = plainSetting(defaults, MailKeys::moveAfterSave, usual.moveAfterSave);
    stored.archiveMailbox = text(MailKeys::archiveMailbox, usual.archiveMailbox);
    stored.autoDaily = plainSetting(defaults, MailKeys::autoDaily, usual.autoDaily);
    stored.selectedBoxes = storedSelection(defaults);
    return stored;
}

QStringList MailSettings::extraList() const
{
    return commaList(extraFolders);
}

bool MailSettings::isDefaultSelected(const MailBoxRef &box) const
{
    return box.isInbox() ||
           std::ranges::any_of(extraList(), [&](const QString &extra) { return folded(extra) == folded(box.name); });
}

bool MailSettings::isSelected(const MailBoxRef &box) const
{
    return selectedBoxes ? selectedBoxes->contains(box.id()) : isDefaultSelected(box);
}

QSet<QString> MailSettings::selectionWith(const MailBoxRef &box, bool selected,
                                          const std::vector<MailBoxRef> &available) const
{
    QSet<QString> ids = selectedBoxes.value_or(QSet<QString>());
    for (const MailBoxRef &one : available) {
        if (!selectedBoxes && isDefaultSelected(one))
            ids.insert(one.id());
    }
    if (selected)
        ids.insert(box.id());
    else
        ids.remove(box.id());
    return ids;
}

MailArea MailSettings::suggestArea(const QString &account, const QString &sender, const MailRule &rule) const
{
    if (containsWordOf(businessAccounts, account) || containsWordOf(businessSenders, sender))
        return MailArea::Geschaeftlich;
    return rule.area.value_or(MailArea::Privat);
}

} // namespace brellin
