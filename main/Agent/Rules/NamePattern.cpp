#include "Agent/Rules/NamePattern.h"

#include "Base/Location.h"
#include "Disk/FileTypes.h"
#include "Guard/Placeholders.h"

#include <algorithm>

namespace brellin {

namespace {

/// Cache limit: "Bericht.1037" has an extension of its own.
constexpr std::size_t mostForms = 500;
const QString nameGroup = QStringLiteral("name");

QString composed(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C);
}

/// A regular expression for any date in the place of a date placeholder.
QString dateExpression(const QString &placeholder)
{
    QString year = QStringLiteral("[0-9]{4}");
    QString month = QStringLiteral("(?:0[1-9]|1[0-2])");
    const QString day = QStringLiteral("(?:0[1-9]|[12][0-9]|3[01])");
    if (placeholder == u"{Jahr}")
        return year;
    if (placeholder == u"{Monat}")
        return month;
    return placeholder == u"{Tag}" ? day : year + u'-' + month + u'-' + day;
}

bool isEdge(QChar c)
{
    return c.isSpace() || c == u'.';
}

QString withoutCounter(QString stem)
{
    static const QRegularExpression counter(QStringLiteral("\\s*\\([0-9]+\\)$"));
    return stem.remove(counter);
}

} // namespace

NamePattern::NamePattern(const QString &pattern)
{
    static const QRegularExpression placeholder(QStringLiteral("\\{(?:Jahr|Monat|Tag|Datum|Kategorie|Name|Endung)\\}"));
    const auto addText = [this](const QString &text) {
        // A name is one path component, so replace what it cannot contain.
        if (!text.isEmpty())
            m_pieces.push_back({Piece::Kind::Text, composed(text).replace(u'/', u'-').replace(QChar(0), u'-')});
    };
    qsizetype end = 0;
    for (auto found = placeholder.globalMatch(pattern); found.hasNext();) {
        const QRegularExpressionMatch one = found.next();
        addText(pattern.mid(end, one.capturedStart() - end));
        end = one.capturedEnd();
        const QString mark = one.captured();
        const Piece::Kind kind = mark == u"{Name}"        ? Piece::Kind::Name
                                 : mark == u"{Kategorie}" ? Piece::Kind::Category
                                 : mark == u"{Endung}"    ? Piece::Kind::Ending
                                                          : Piece::Kind::Date;
        m_pieces.push_back({kind, mark});
    }
    addText(pattern.mid(end));
}

/// The pieces for a file without an extension: only the text around {Endung} remains.
NamePattern::Pieces NamePattern::withEmptyEnding(const Pieces &pieces)
{
    Pieces joined;
    for (const Piece &piece : pieces) {
        const bool isText = piece.kind == Piece::Kind::Text;
        if (isText && !joined.empty() && joined.back().kind == Piece::Kind::Text)
            joined.back().text += piece.text;
        else if (piece.kind != Piece::Kind::Ending)
            joined.push_back(piece);
    }
    return joined;
}

/// Strips what produces the extension, since the extension is appended to every name that lacks it.
NamePattern::Pieces NamePattern::withoutEnding(Pieces pieces, const QString &extension)
{
    using Kind = Piece::Kind;
    if (pieces.size() > 1 && pieces.back().kind == Kind::Ending && pieces[pieces.size() - 2].text.endsWith(u'.')) {
        pieces.pop_back();
        pieces.back().text.chop(1);
    } else if (!pieces.empty() && pieces.back().kind == Kind::Text && !extension.isEmpty() &&
               pieces.back().text.endsWith(u'.' + extension, Qt::CaseInsensitive)) {
        pieces.back().text.chop(extension.size() + 1);
    }
    while (!pieces.empty() && pieces.back().kind == Kind::Text && pieces.back().text.trimmed().isEmpty())
        pieces.pop_back();
    if (!pieces.empty() && pieces.back().kind == Kind::Text)
        while (pieces.back().text.back().isSpace())
            pieces.back().text.chop(1);
    while (!pieces.empty() && pieces.front().kind == Kind::Text) {
        const QString &text = pieces.front().text;
        const auto front = std::ranges::find_if_not(text, isEdge);
        pieces.front().text = text.sliced(front - text.begin());
        if (!pieces.front().text.isEmpty())
            break;
        pieces.erase(pieces.begin());
    }
    return pieces;
}

NamePattern::Form NamePattern::formOf(Pieces pieces, std::string_view extension)
{
    Form form{std::move(pieces), {}, fileCategory(extension), composed(shown(extension))};
    QString text;
    bool named = false;
    for (const Piece &piece : form.pieces) {
        switch (piece.kind) {
        case Piece::Kind::Text:
            text += QRegularExpression::escape(piece.text);
            break;
        case Piece::Kind::Date:
            text += u'(' + dateExpression(piece.text) + u')';
            break;
        case Piece::Kind::Category:
            text += QRegularExpression::escape(form.category);
            break;
        case Piece::Kind::Name:
            text += named ? QStringLiteral("\\k<name>") : QStringLiteral("(?<name>.+)");
            named = true;
            break;
        case Piece::Kind::Ending:
            text += QRegularExpression::escape(form.extension);
            break;
        }
    }
    form.expression =
        QRegularExpression(QRegularExpression::anchoredPattern(text), QRegularExpression::DotMatchesEverythingOption);
    return form;
}

std::optional<QString> NamePattern::Form::remade(const QString &stem) const
{
    const QRegularExpressionMatch found = expression.match(stem);
    if (!found.hasMatch())
        return std::nullopt;
    QString made;
    int group = 0;
    bool named = false;
    for (const Piece &piece : pieces) {
        switch (piece.kind) {
        case Piece::Kind::Text:
            made += piece.text;
            break;
        case Piece::Kind::Date:
            made += found.captured(++group);
            break;
        case Piece::Kind::Category:
            made += category;
            break;
        case Piece::Kind::Name:
            made += cleanFileName(found.captured(nameGroup));
            // The first {Name} is a capture group too, numbered among the dates.
            group += named ? 0 : 1;
            named = true;
            break;
        case Piece::Kind::Ending:
            made += extension;
            break;
        }
    }
    return made;
}

const std::vector<NamePattern::Form> &NamePattern::formsFor(std::string_view extension)
{
    const auto known = m_forms.find(extension);
    if (known != m_forms.end())
        return known->second;
    if (m_forms.size() >= mostForms)
        m_forms.clear();
    std::vector<Form> forms;
    const QString ending = composed(shown(extension));
    // If cleaning left nothing of a name, only the text around {Name} remains.
    Pieces nameless = m_pieces;
    std::erase_if(nameless, [](const Piece &piece) { return piece.kind == Piece::Kind::Name; });
    const bool hasName = nameless.size() < m_pieces.size();
    const auto add = [&](const Pieces &whole) {
        if (Pieces pieces = withoutEnding(whole, ending); !pieces.empty())
            forms.push_back(formOf(std::move(pieces), extension));
    };
    // First as a scan would name it, then with the dot before {Endung} left out, as a user would.
    if (ending.isEmpty())
        add(withEmptyEnding(m_pieces));
    add(m_pieces);
    if (hasName)
        add(nameless);
    return m_forms.emplace(extension, std::move(forms)).first->second;
}

std::optional<QString> NamePattern::remade(std::string_view fileName)
{
    const std::vector<Form> &forms = formsFor(extensionOf(fileName));
    const QString name = composed(shown(fileName));
    const QString stem = composed(shown(stemOf(fileName)));
    const QString ending = name.sliced(stem.size());
    const QString uncounted = withoutCounter(stem);
    QStringList candidates{stem};
    // The end of a date may look like an extension ("Liste 01.02.2020"), and a counter was added if the name was taken.
    if (!ending.isEmpty())
        candidates << name;
    if (uncounted != stem)
        candidates << uncounted;
    if (uncounted != stem && !ending.isEmpty())
        candidates << uncounted + ending;
    for (const QString &candidate : std::as_const(candidates)) {
        for (const Form &form : forms) {
            if (std::optional<QString> again = form.remade(candidate))
                return again;
        }
    }
    return std::nullopt;
}

} // namespace brellin
