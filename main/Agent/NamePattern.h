#pragma once

#include <QRegularExpression>
#include <QString>

#include <optional>
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
    std::optional<QString> remade(std::string_view fileName) const;

private:
    struct Piece {
        enum class Kind { Text, Date, Category, Name, Ending };
        Kind kind = Kind::Text;
        QString text; ///< as it stands in the pattern
    };
    using Pieces = std::vector<Piece>;

    static Pieces withoutEnding(Pieces pieces, const QString &extension);
    static QRegularExpression expression(const Pieces &pieces, std::string_view fileName);
    static std::optional<QString> match(const Pieces &pieces, const QString &stem, std::string_view fileName);

    Pieces m_pieces;
};

} // namespace brellin
