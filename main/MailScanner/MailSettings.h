#pragma once

#include "MailScanner/MailBoxRef.h"
#include "MailScanner/MailRule.h"
#include "Places/KnownFolders.h"
#include "System/UserDefaults.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace brellin {

namespace MailKeys {
inline const QString rules = QStringLiteral("mailRules");
inline const QString rulesVersion = QStringLiteral("mailRulesVersion");
inline const QString days = QStringLiteral("mailDays");
inline const QString aiNaming = QStringLiteral("mailAINaming");
inline const QString extraFolders = QStringLiteral("mailExtraFolders");
inline const QString enabled = QStringLiteral("mailEnabled");
inline const QString privatePath = QStringLiteral("mailPrivatePath");
inline const QString businessPath = QStringLiteral("mailBusinessPath");
inline const QString businessAccounts = QStringLiteral("mailBusinessAccounts");
inline const QString businessSenders = QStringLiteral("mailBusinessSenders");
inline const QString moveAfterSave = QStringLiteral("mailMoveAfterSave");
inline const QString archiveMailbox = QStringLiteral("mailArchiveBox");
inline const QString autoDaily = QStringLiteral("mailAutoDaily");
inline const QString selectedBoxes = QStringLiteral("mailSelectedBoxes");
inline const QString done = QStringLiteral("mailDoneIDs");
} // namespace MailKeys

/// What the search for receipts is told, but for its rules.
struct MailSettings {
    int days = 90; ///< how far back a scan looks, 1 … 3650
    bool aiNaming = true;
    QString extraFolders; ///< comma list: in these mailboxes each mail with a file counts as a receipt
    bool enabled = true;
    QString privatePath;
    QString businessPath;
    QString businessAccounts; ///< comma list of words in account names
    QString businessSenders;  ///< comma list of words in senders
    bool moveAfterSave = true;
    QString archiveMailbox;
    bool autoDaily = false;
    /// Ids of the mailboxes to search; nullopt: every inbox and the extra folders.
    std::optional<QSet<QString>> selectedBoxes;

    bool operator==(const MailSettings &) const = default;

    /// The settings as stored; a value of the wrong type or out of range counts as its default.
    static MailSettings read(const UserDefaults &defaults, const KnownFolders &folders);

    QStringList extraList() const;
    /// Whether a mailbox is searched while the user has selected none.
    bool isDefaultSelected(const MailBoxRef &box) const;
    bool isSelected(const MailBoxRef &box) const;
    /// The selection after ticking or unticking `box`, whether or not it is among `available`; the first change makes the
    /// default selection of `available` explicit.
    QSet<QString> selectionWith(const MailBoxRef &box, bool selected, const std::vector<MailBoxRef> &available) const;
    /// The area proposed for a mail: the business lists win over the rule's own.
    MailArea suggestArea(const QString &account, const QString &sender, const MailRule &rule) const;
    const QString &pathOf(MailArea area) const { return area == MailArea::Privat ? privatePath : businessPath; }
};

/// The folder below which receipts are filed until the user chooses others: the user's own documents, else Documents.
const Location &receiptBase(const KnownFolders &folders);

} // namespace brellin
