#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// A search text for names; ignores case and Unicode composition.
class NameQuery {
public:
    explicit NameQuery(const QString &text);

    bool matches(std::string_view name) const;

private:
    bool matchesAscii(std::string_view name) const;

    QString m_folded;
    std::optional<std::string> m_ascii; ///< the text in lower case, if it is pure ASCII
};

} // namespace brellin
