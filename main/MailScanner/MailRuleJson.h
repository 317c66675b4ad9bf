#pragma once

#include "MailScanner/MailRule.h"
#include "System/StoredList.h"

/// The stored form of mail rules. The keys must not change: earlier and later versions read them.
namespace brellin {

template <>
struct JsonWords<MailDocKind> {
    static constexpr std::array words{std::pair{MailDocKind::Rechnung, u"rechnung"},
                                      std::pair{MailDocKind::Zahlung, u"zahlung"}};
};

template <>
struct JsonWords<MailArea> {
    static constexpr std::array words{std::pair{MailArea::Privat, u"privat"},
                                      std::pair{MailArea::Geschaeftlich, u"geschaeftlich"}};
};

template <>
struct JsonTable<MailRule> {
    static constexpr std::tuple fields{field("id", &MailRule::id),
                                       field("enabled", &MailRule::enabled),
                                       field("name", &MailRule::name),
                                       field("kind", &MailRule::kind),
                                       field("keywords", &MailRule::keywords),
                                       field("senders", &MailRule::senders),
                                       field("target", &MailRule::target),
                                       field("automatic", &MailRule::automatic),
                                       field("exclude", &MailRule::exclude),
                                       field("area", &MailRule::area)};
};

/// The mails of a lost rule would fall to the next one, which may file them elsewhere by itself.
template <>
inline constexpr bool recordsStandAlone<MailRule> = false;

} // namespace brellin
