#include "Agent/Rules/RuleTargets.h"

#include "Base/German.h"
#include "Disk/FreeName.h"
#include "Guard/Placeholders.h"

#include <QDateTime>
#include <QRegularExpression>

namespace brellin {

namespace {

constexpr QLatin1StringView nameMark("{Name}");

bool isText(std::string_view bytes)
{
    return QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

QString composedName(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C);
}

/// Replaces what a path component cannot contain.
QString asComponent(QString text)
{
    return text.replace(u'/', u'-').replace(QChar(0), u'-');
}

/// What a target names that is no absolute path; empty if nothing was filled in. CandidateVerdicts refuses it.
Location relativeTarget(QString written)
{
    return locationFromText(written.remove(QChar(0)).trimmed()).relative_path();
}

/// Turns an expanded pattern into a name: no leading dots, no blanks at the ends.
QString asName(const QString &expanded)
{
    QString text = asComponent(expanded).trimmed();
    while (text.startsWith(u'.') || (!text.isEmpty() && text.front().isSpace()))
        text.remove(0, 1);
    return text;
}

/// Appends a file's extension to a name that lacks it; an empty name stays empty.
std::string withExtension(QString name, std::string_view extension)
{
    const QString ending = u'.' + shown(extension);
    if (!name.isEmpty() && !extension.empty() && !name.endsWith(ending, Qt::CaseInsensitive))
        name += ending;
    return name.toStdString();
}

} // namespace

Location fixedPart(const QString &target)
{
    const qsizetype mark = target.indexOf(u'{');
    return locationFromText(mark < 0 ? target : target.first(target.lastIndexOf(u'/', mark) + 1));
}

RuleTargets::RuleTargets(const CleanupRule &rule, Location home, Instant now)
    : m_rule(rule)
    , m_home(std::move(home))
    , m_now(now)
    , m_pattern(QString(rule.targetPath).replace(nameMark, QLatin1StringView(" ")))
    , m_patternHasType(m_pattern.contains(u"{Kategorie}") || m_pattern.contains(u"{Endung}"))
    , m_names(rule.renamePattern)
{
}

std::optional<Candidate> RuleTargets::candidate(const WalkedFile &file, const RuleSource &source)
{
    Candidate made{.kind = AgentProposal::Kind::Move,
                   .source = {},
                   .destination = {},
                   .reason = m_rule.name,
                   .automatic = m_rule.automatic,
                   .isPackage = file.package,
                   .aiBase = {},
                   .seen = file.state,
                   .created = file.created};
    bool wanted = true;
    switch (m_rule.action) {
    case RuleAction::Copy:
        made.kind = AgentProposal::Kind::Copy;
        [[fallthrough]];
    case RuleAction::Move:
        wanted = setFolderTarget(made, file, source);
        break;
    case RuleAction::Rename:
        made.kind = AgentProposal::Kind::Rename;
        wanted = setNewName(made, file);
        break;
    case RuleAction::Trash:
        made.kind = AgentProposal::Kind::Trash;
        break;
    case RuleAction::AiSort:
        wanted = setChosenByModel(made);
        break;
    }
    if (!wanted)
        return std::nullopt;
    made.source = file.location();
    made.rule = m_rule.id;
    return made;
}

bool RuleTargets::setFolderTarget(Candidate &candidate, const WalkedFile &file, const RuleSource &source)
{
    const Target &target = targetOf(file);
    if (!target.folder && !target.noFolder.empty())
        candidate.destination = target.noFolder / file.name;
    if (!target.folder || target.folder->native() == file.folder)
        return candidate.destination.has_value();
    // The target is the file's own folder by another path: moving would only add a number, again with every scan.
    const std::string_view below = file.folder.substr(source.folder.native().size());
    if (target.resolved.size() == source.resolved.size() + below.size() &&
        target.resolved.starts_with(source.resolved) && target.resolved.ends_with(below))
        return false;
    candidate.destination = *target.folder / file.name;
    return true;
}

const RuleTargets::Target &RuleTargets::targetOf(const WalkedFile &file)
{
    // Only dates and types vary, so many files map to few folders.
    std::pair<QDate, std::string> key;
    if (m_pattern.contains(u'{'))
        key.first = m_days.of(dateOf(file));
    if (m_patternHasType)
        key.second = extensionOf(file.name);
    const auto [entry, isNew] = m_targets.try_emplace(std::move(key));
    if (isNew) {
        Target &target = entry->second;
        const QString written = expand(m_pattern, file.location(), dateOf(file));
        target.folder = rulePath(written, m_home);
        if (target.folder)
            target.resolved = resolvedLocation(*target.folder).value_or(*target.folder).native();
        else
            target.noFolder = relativeTarget(written);
    }
    return entry->second;
}

/// The expanded pattern as a name; empty if that is not a valid name. Where it is too long, {Name} is shortened and never
/// the text around it: with a part of that text missing, the next scan would not recognise the name and add to it.
std::string RuleTargets::expandedName(const WalkedFile &file) const
{
    const std::string_view extension = extensionOf(file.name);
    std::string stem(stemOf(file.name));
    const std::string ending(file.name.substr(stem.size()));
    while (true) {
        const Location named = Location(file.folder) / (stem + ending);
        std::string name = withExtension(asName(expand(m_rule.renamePattern, named, dateOf(file))), extension);
        constexpr std::size_t fitsEverywhere = 120;
        const std::size_t limit = name.size() <= fitsEverywhere ? 255 : nameLimit(Location(file.folder));
        if (!m_rule.renamePattern.contains(nameMark))
            return fittingName(name, limit);
        if (name.size() <= limit)
            return name;
        // Leaves room for a number.
        const std::size_t over = name.size() + std::string_view(" (999)").size() - limit;
        stem = over < stem.size() ? std::string(cutText(stem, stem.size() - over)) : std::string();
        if (stem.empty())
            return {};
    }
}

/// Empty if there is no valid name.
std::string RuleTargets::newName(const WalkedFile &file)
{
    const std::optional<QString> remade = remadeName(file);
    return remade ? fittingName(withExtension(asName(*remade), extensionOf(file.name))) : expandedName(file);
}

/// For a name that an earlier scan may have given: rebuilds it with its own dates. Otherwise "{Datum} {Name}" would
/// prepend another date whenever the file changes.
std::optional<QString> RuleTargets::remadeName(const WalkedFile &file)
{
    return isText(file.name) ? m_names.remade(file.name) : std::nullopt;
}

bool RuleTargets::keepsItsName(const WalkedFile &file)
{
    return m_rule.action == RuleAction::Rename && remadeName(file);
}

bool RuleTargets::setNewName(Candidate &candidate, const WalkedFile &file)
{
    // Placeholders need text: a name that is not valid UTF-8 would lose bytes.
    if (!isText(file.name))
        return false;
    const std::string made = newName(file);
    const std::string_view name = made;
    if (name.empty() || composedName(shown(name)) == composedName(shown(file.name)))
        return false;
    const Location destination = Location(file.folder) / name;
    static const QRegularExpression counter(QStringLiteral("\\s*\\(\\d+\\)$"));
    const QString uncounted = composedName(shown(stemOf(file.name))).remove(counter);
    // The file has its counter because the plain name is taken.
    if (uncounted == composedName(shown(stemOf(name))) && entryExists(destination))
        return false;
    candidate.destination = destination;
    return true;
}

bool RuleTargets::setChosenByModel(Candidate &candidate) const
{
    candidate.needsAI = true;
    candidate.aiBase = rulePath(m_rule.targetPath, m_home);
    candidate.reason += QStringLiteral(" (KI)");
    if (const Location written = relativeTarget(m_rule.targetPath); !candidate.aiBase && !written.empty())
        candidate.aiBase = written;
    return candidate.aiBase.has_value();
}

} // namespace brellin
