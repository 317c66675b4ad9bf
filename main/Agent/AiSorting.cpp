#include "Agent/AiSorting.h"

#include "System/StoredList.h"

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
                                       field("folder", &AiAnswer::folder)};
};

namespace {

const QString answersKey = QStringLiteral("agentAIAnswers");
/// Answers kept, so that the list does not grow for ever.
constexpr std::size_t mostAnswers = 5'000;

/// As a stored date has it: microseconds.
FileState storable(FileState state)
{
    state.modified = std::chrono::floor<std::chrono::milliseconds>(state.modified);
    return state;
}

} // namespace

AiSorting::AiSorting(const AgentServices &services, const JobControl &control)
    : m_services(services)
    , m_control(control)
    , m_answers(storedList<AiAnswer>(services.defaults, answersKey).value_or(std::vector<AiAnswer>()))
    , m_end(std::chrono::steady_clock::now() + budget)
{
}

std::optional<Location> AiSorting::destinationOf(const Candidate &candidate)
{
    const std::optional<QString> folder = candidate.aiBase ? answerFor(candidate) : std::nullopt;
    if (!folder)
        return std::nullopt;
    const Location target = *candidate.aiBase / folder->toStdString();
    if (target == candidate.source.parent_path())
        return std::nullopt;
    return target / candidate.source.filename();
}

std::optional<QString> AiSorting::answerFor(const Candidate &candidate)
{
    const FileState state = storable(candidate.seen);
    const auto known = std::ranges::find_if(
        m_answers, [&](const AiAnswer &answer) { return answer.rule == candidate.rule && answer.file == state; });
    if (known != m_answers.end())
        return known->folder;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_end - std::chrono::steady_clock::now());
    if (left.count() <= 0 || m_control.cancelled())
        return std::nullopt;
    if (!m_available)
        m_available = AgentAI::isAvailable(m_services.model);
    if (!*m_available)
        return std::nullopt;
    auto existing = m_existing.find(*candidate.aiBase);
    if (existing == m_existing.end())
        existing = m_existing.emplace(*candidate.aiBase, AgentAI::existingFolders(*candidate.aiBase, &m_control)).first;
    const std::optional<QString> folder =
        AgentAI::folderName(m_services.model, candidate.source, existing->second, m_services.pdfText,
                            std::min(left, answerLimit), &m_control);
    if (folder) {
        m_answers.push_back({candidate.rule, state, *folder});
        m_changed = true;
    }
    return folder;
}

void AiSorting::remember() const
{
    if (!m_changed)
        return;
    const std::size_t old = m_answers.size() > mostAnswers ? m_answers.size() - mostAnswers : 0;
    // Losing answers costs time at the next scan, nothing else.
    (void)storeList(m_services.defaults, answersKey,
                    std::vector(m_answers.begin() + static_cast<std::ptrdiff_t>(old), m_answers.end()));
}

} // namespace brellin
