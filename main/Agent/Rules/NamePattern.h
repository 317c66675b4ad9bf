#pragma once

#include <QRegularExpression>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// Matches file names against the pattern of a rename rule, so that a scan does not rename a file again and again
/// ("{Datum} {Name}" would prepend one more date each time). Any date matches a date placeholder; blanks and dots at
/// the ends and the file's extension are ignored. A name the user typed in the same form also matches.
class NamePattern {
public:
    explicit NamePattern(const QString &pattern);

    /// For a name the pattern could have produced: the pattern filled with the name's own dates and its cleaned {Name}
    /// part. The result is not a valid file name yet. nullopt for other names.
    std::optional<QString> remade(std::string_view fileName);

private:
    struct Piece {
        enum class Kind { Text, Date, Category, Name, Ending };
        Kind kind = Kind::Text;
        QString text; ///< as written in the pattern
    };
    using Pieces = std::vector<Piece>;

    /// The expected form of names with one extension.
    struct Form {
        Pieces pieces;
        QRegularExpression expression;
        QString category;
        QString extension;

        std::optional<QString> remade(const QString &stem) const;
    };

    static Pieces withEmptyEnding(const Pieces &pieces);
    static Pieces withoutEnding(Pieces pieces, const QString &extension);
    static Form formOf(Pieces pieces, std::string_view extension);
    const std::vector<Form> &formsFor(std::string_view extension);

    Pieces m_pieces;
    std::map<std::string, std::vector<Form>, std::less<>> m_forms; ///< by extension
};

} // namespace brellin
