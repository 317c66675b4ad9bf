#include "Agent/Model/AiSorting.h"

#include "Disk/FreeName.h"
#include "Guard/SystemLocations.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

template <>
struct JsonTable<FileIdentity> {
    static constexpr std::tuple fields{field("device", &FileIdentity::device), field("inode", &FileIdentity::inode)};
};

template <>
struct JsonTable<FileState> {
    static constexpr std::tuple fields{field("identity", &FileState::identity), field("size", &FileState::size),
                                       field("modified", &FileState::modified)};
};

template <>
struct JsonTable<AiAnswer> {
    static constexpr std::tuple fields{field("rule", &AiAnswer::rule), field("file", &AiAnswer::file),
                                       field("base", &AiAnswer::base), field("folder", &AiAnswer::folder),
                                       field("existed", &AiAnswer::existed)};
};

namespace {

const QString answersKey = QStringLiteral("agentAIAnswers");

/// Limit for the stored answers.
constexpr std::size_t mostAnswers = 5'000;

/// Stored dates have millisecond resolution.
FileState storable(FileState state)
{
    state.modified = std::chrono::floor<std::chrono::milliseconds>(state.modified);
    return state;
}

} // namespace

AiSorting::AiSorting(const ModelServices &services, const JobControl &control)
    : m_services(services)
    , m_control(control)
    , m_answers(storedList<AiAnswer>(services.defaults, answersKey).value_or(std::vector<AiAnswer>()))
    , m_end(std::chrono::steady_clock::now() + budget)
{
}

StoredKind AiSorting::answersKind()
{
    return storedKind<AiAnswer>(answersKey);
}

std::optional<Location> AiSorting::destinationOf(const Candidate &candidate)
{
    const std::optional<QString> folder = candidate.aiBase ? answerFor(candidate) : std::nullopt;
    if (!folder)
        return std::nullopt;
    const Location target = *candidate.aiBase / folder->toStdString();
    if (resolvedLocation(target) == resolvedLocation(candidate.source.parent_path()))
        return std::nullopt;
    return unique(target / candidate.source.filename());
}

QStringList &AiSorting::existingIn(const Location &base)
{
    auto known = m_existing.find(base);
    if (known == m_existing.end())
        known = m_existing.emplace(base, AgentAI::existingFolders(base, &m_control)).first;
    return known->second;
}

std::optional<QString> AiSorting::answerFor(const Candidate &candidate)
{
    const FileState state = storable(candidate.seen);
    std::optional<QString> folder = keptAnswer(candidate, state);
    if (!folder)
        folder = ask(candidate, state);
    // Files of one scan that need the same new folder share it.
    if (folder && !existingIn(*candidate.aiBase).contains(*folder))
        existingIn(*candidate.aiBase).append(*folder);
    return folder;
}

/// Uses the folder's present spelling.
std::optional<QString> AiSorting::keptAnswer(const Candidate &candidate, const FileState &state)
{
    const auto known = std::ranges::find_if(m_answers, [&](const AiAnswer &answer) {
        return answer.rule == candidate.rule && answer.file == state && answer.base == *candidate.aiBase;
    });
    if (known == m_answers.end())
        return std::nullopt;
    const QStringList &existing = existingIn(*candidate.aiBase);
    std::optional<QString> folder = AgentAI::sanitize(known->folder, existing);
    if (!folder || (known->existed && !existing.contains(*folder))) {
        m_answers.erase(known);
        return std::nullopt;
    }
    return folder;
}

std::optional<QString> AiSorting::ask(const Candidate &candidate, const FileState &state)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_end - std::chrono::steady_clock::now());
    if (left.count() <= 0 || m_control.cancelled())
        return std::nullopt;
    if (!m_available)
        m_available = AgentAI::isAvailable(m_services.model);
    if (!*m_available)
        return std::nullopt;
    const QStringList &existing = existingIn(*candidate.aiBase);
    const std::optional<QString> folder = AgentAI::folderName(
        m_services.model, candidate.source, existing, m_services.pdfText, std::min(left, answerLimit), &m_control);
    if (folder) {
        const bool existed = readAttributes(*candidate.aiBase / folder->toStdString()).has_value();
        m_answers.push_back({candidate.rule, state, *candidate.aiBase, *folder, existed});
        m_changed = true;
    }
    return folder;
}

void AiSorting::remember() const
{
    if (!m_changed)
        return;
    const std::size_t old = m_answers.size() > mostAnswers ? m_answers.size() - mostAnswers : 0;
    // If this fails, the next scan asks again.
    (void)storeList(m_services.defaults, answersKey,
                    std::vector(m_answers.begin() + static_cast<std::ptrdiff_t>(old), m_answers.end()));
}

} // namespace brellin
