#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// A text that names are searched for, without regard to case and to how umlauts are composed.
class NameQuery {
public:
    explicit NameQuery(const QString &text);

    bool matches(std::string_view name) const;

private:
    bool matchesAscii(std::string_view name) const;

    QString m_folded;
    std::optional<std::string> m_ascii; ///< the same where it is nothing but ASCII, in lower case
};

} // namespace brellin
