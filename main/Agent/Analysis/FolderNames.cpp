#include "Agent/Analysis/FolderNames.h"

#include <QRegularExpression>

namespace brellin {

namespace {

QRegularExpression anyCase(const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption |
                                           QRegularExpression::UseUnicodePropertiesOption |
                                           QRegularExpression::DotMatchesEverythingOption);
}

QString composed(std::string_view bytes)
{
    return shown(bytes).normalized(QString::NormalizationForm_C);
}

} // namespace

bool isBackupLike(const Location &relative)
{
    static const QRegularExpression pattern = anyCase(QStringLiteral(
        "(^|/)(_?(sicherung|sicherungen|archiv|backup|alt|old|tmp|temp|abgeloest)[^/]*|[^/]* (2|3|kopie|copy))"
        "(/|\\z)"));
    return pattern.match(composed(relative.native())).hasMatch();
}

bool isRemovableName(std::string_view name)
{
    static const QRegularExpression pattern = anyCase(QRegularExpression::anchoredPattern(
        QStringLiteral("(_?(archiv|sicherung|sicherungen|backup|backups|alt|old|tmp|temp)([ _-].*)?|_?vorschau-tmp|"
                       "_claude-test|.*[ _-](kopie|copy|backup|alt|old))")));
    return pattern.match(composed(name)).hasMatch();
}

bool isNumberedName(std::string_view name)
{
    const std::size_t end = name.find_first_not_of("0123456789");
    return end != 0 && end != std::string_view::npos &&
           std::string_view(" _-.)").find(name[end]) != std::string_view::npos;
}

} // namespace brellin
