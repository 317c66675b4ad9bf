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

/// A rename rule's pattern, read backwards: tells names that it could have made, so that a scan does not put a date in front
/// of every date. Any date stands for its date parts; blanks and dots at the edges and the file's ending do not count. A
/// name that somebody else began like the pattern's text looks the same and counts as made by it.
class NamePattern {
public:
    explicit NamePattern(const QString &pattern);

    /// For a file name that the pattern could have made: the pattern with the name's own dates and its {Name} part cleaned,
    /// still to be made a name. Nothing for other names.
    std::optional<QString> remade(std::string_view fileName);

private:
    struct Piece {
        enum class Kind { Text, Date, Category, Name, Ending };
        Kind kind = Kind::Text;
        QString text; ///< as it stands in the pattern
    };
    using Pieces = std::vector<Piece>;

    /// What names with one extension look like.
    struct Form {
        Pieces pieces;
        QRegularExpression expression;
        QString category;
        QString extension;

        std::optional<QString> remade(const QString &stem) const;
    };

    static Pieces withoutEnding(Pieces pieces, const QString &extension);
    static Form formOf(Pieces pieces, std::string_view extension);
    const std::vector<Form> &formsFor(std::string_view extension);

    Pieces m_pieces;
    std::map<std::string, std::vector<Form>, std::less<>> m_forms; ///< by extension
};

} // namespace brellin
