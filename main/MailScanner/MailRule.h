#pragma once

#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <array>
#include <optional>
#include <vector>

namespace brellin {

/// What a matching mail is filed as.
enum class MailDocKind { Rechnung, Zahlung };
inline constexpr std::array mailDocKinds{MailDocKind::Rechnung, MailDocKind::Zahlung};
/// The word under which a kind is stored; also identifies it in lists.
QString rawValue(MailDocKind kind);
QString title(MailDocKind kind);

/// Whose receipt it is.
enum class MailArea { Privat, Geschaeftlich };
inline constexpr std::array mailAreas{MailArea::Privat, MailArea::Geschaeftlich};
QString rawValue(MailArea area);
QString title(MailArea area);

/// Which mails are receipts of which kind. Rules are tried top to bottom; the first enabled one that matches wins.
struct MailRule {
    QUuid id = QUuid::createUuid();
    bool enabled = true;
    QString name;
    MailDocKind kind = MailDocKind::Rechnung;
    QString keywords; ///< comma list, searched for in the subject
    QString senders;  ///< comma list, searched for in the sender
    QString target;   ///< destination folder, may contain "{Jahr}"
    bool automatic = false;
    std::optional<QString> exclude; ///< comma list; a subject with one of them never matches
    std::optional<MailArea> area;   ///< unless the business lists decide

    bool operator==(const MailRule &) const = default;

    /// Whether a mail is a receipt by this rule: each non-empty list must have a word in its text. Ignores case and
    /// Unicode form. A rule without keywords and senders matches nothing. Does not look at `enabled`.
    bool matches(const QString &subject, const QString &sender) const;
};

/// Whether `text` contains a word of a comma list; ignores case and Unicode form.
bool containsWordOf(const QString &words, const QString &text);

/// The exclude list of the default rules, offered for new ones.
QString defaultExclude();
/// The rules of a new installation, with target folders below `base`.
std::vector<MailRule> defaultRules(const Location &base);

/// Version of the stored rules that `upgradedMailRules` produces.
inline constexpr int mailRulesVersion = 2;
/// Rules of an earlier version brought to the present one: the default rules, which keep switch, automatic filing and
/// target of an old rule of the same name, followed by the user's own rules.
std::vector<MailRule> upgradedMailRules(const std::vector<MailRule> &old, const Location &base);

} // namespace brellin
