#include "History/EntryTrail.h"

#include "Runs/EntrySearch.h"

#include <QHash>

#include <algorithm>
#include <map>
#include <set>

namespace brellin {

namespace {

/// What stays the same through renames and, with a birth, through every change. The number of a device does not.
QString keyOf(const EntryMark &mark)
{
    const EntryMark known{{{0, mark.state.identity.inode},
                           mark.created ? 0 : mark.state.size,
                           mark.created ? Instant() : mark.state.modified},
                          mark.created};
    return known.text();
}

bool isMove(StepKind kind)
{
    return kind == StepKind::Move || kind == StepKind::Rename || kind == StepKind::BatchRename ||
           kind == StepKind::Trash || kind == StepKind::Rights;
}

/// Follows entries through the history, oldest step first.
class TrailReading {
public:
    void take(const HistoryStep &step, const HistoryEntry &one)
    {
        const StepEntry &entry = one.entry;
        const QString before = entry.was ? keyOf(*entry.was) : m_keyAt[entry.from];
        QString after = entry.now ? keyOf(*entry.now) : QString();
        if (after.isEmpty())
            after = isMove(one.kind) && !before.isEmpty() ? before : QStringLiteral("#%1").arg(m_unknown++);
        const EntryTrail::Step passed{step.by, step.id, step.date, one};
        const int arrived = trailOf(after);
        if (isMove(one.kind) && !before.isEmpty())
            join(trailOf(before), arrived);
        else if (!before.isEmpty())
            add(trailOf(before), passed, entry.was);
        add(arrived, passed, entry.now);
        if (isMove(one.kind) && entry.was)
            add(arrived, entry.was);
        // A merged folder went into another one, which stays who it was.
        if (!entry.merged)
            m_keyAt[entry.to] = after;
        if (isMove(one.kind) && entry.from != entry.to)
            m_keyAt.erase(entry.from);
        if (entry.takenBack && !entry.from.empty())
            m_keyAt[entry.from] = before.isEmpty() ? after : before;
    }

    std::vector<EntryTrail> trails() &&
    {
        std::vector<EntryTrail> found;
        for (std::size_t i = 0; i < m_trails.size(); ++i) {
            if (m_joinedTo[i] == static_cast<int>(i) && !m_trails[i].steps.empty())
                found.push_back(std::move(m_trails[i]));
        }
        return found;
    }

private:
    int rootOf(int trail) const
    {
        while (m_joinedTo[static_cast<std::size_t>(trail)] != trail)
            trail = m_joinedTo[static_cast<std::size_t>(trail)];
        return trail;
    }

    int trailOf(const QString &key)
    {
        const auto known = m_trailOf.constFind(key);
        if (known != m_trailOf.constEnd())
            return rootOf(*known);
        const int made = static_cast<int>(m_trails.size());
        m_trails.emplace_back();
        m_joinedTo.push_back(made);
        m_trailOf.insert(key, made);
        return made;
    }

    void join(int one, int other)
    {
        const int to = rootOf(one);
        const int from = rootOf(other);
        if (to == from)
            return;
        EntryTrail &joined = at(from);
        std::ranges::move(joined.steps, std::back_inserter(at(to).steps));
        std::ranges::move(joined.marks, std::back_inserter(at(to).marks));
        std::ranges::stable_sort(at(to).steps, {}, &EntryTrail::Step::date);
        m_joinedTo[static_cast<std::size_t>(from)] = to;
    }

    void add(int trail, const EntryTrail::Step &step, const std::optional<EntryMark> &mark)
    {
        at(rootOf(trail)).steps.push_back(step);
        add(trail, mark);
    }

    void add(int trail, const std::optional<EntryMark> &mark)
    {
        if (mark)
            at(rootOf(trail)).marks.push_back(*mark);
    }

    EntryTrail &at(int trail) { return m_trails[static_cast<std::size_t>(trail)]; }

    std::vector<EntryTrail> m_trails;
    std::vector<int> m_joinedTo; ///< by trail; itself where it was not joined
    QHash<QString, int> m_trailOf;
    std::map<Location, QString> m_keyAt; ///< of steps that do not say what they moved
    int m_unknown = 0;
};

bool wasCalled(const EntryTrail &trail, const QString &name)
{
    const auto holds = [&](const Location &place) { return !place.empty() && folded(shownName(place)).contains(name); };
    return std::ranges::any_of(trail.steps, [&](const EntryTrail::Step &step) {
        const StepEntry &entry = step.entry.entry;
        // A copy may have been given another name: then only one of the two was called that.
        const bool made =
            !isMove(step.entry.kind) && entry.now && std::ranges::find(trail.marks, *entry.now) != trail.marks.end();
        return made ? holds(entry.to) : holds(entry.from) || (isMove(step.entry.kind) && holds(entry.to));
    });
}

} // namespace

const Location &EntryTrail::last() const
{
    const HistoryEntry &entry = steps.back().entry;
    return entry.place().empty() ? entry.entry.from : entry.place();
}

std::vector<EntryTrail> trailsOf(const std::vector<HistoryStep> &history, const QString &name)
{
    TrailReading reading;
    for (auto step = history.rbegin(); step != history.rend(); ++step) {
        for (const HistoryEntry &entry : step->entries)
            reading.take(*step, entry);
    }
    std::vector<EntryTrail> found = std::move(reading).trails();
    const QString wanted = folded(name);
    std::erase_if(found, [&](const EntryTrail &trail) { return wanted.isEmpty() || !wasCalled(trail, wanted); });
    std::ranges::stable_sort(found, std::ranges::greater(),
                             [](const EntryTrail &trail) { return trail.steps.back().date; });
    return found;
}

std::optional<Location> placeNow(const EntryTrail &trail, const Trash &trash)
{
    const auto isHere = [&](const Location &place) {
        const Result<FileAttributes> there = place.empty() ? failure(Failure()) : readAttributes(place);
        return there && std::ranges::any_of(trail.marks, [&](const EntryMark &mark) { return mark.isSame(*there); });
    };
    for (auto step = trail.steps.rbegin(); step != trail.steps.rend(); ++step) {
        for (const Location &place : {step->entry.entry.to, step->entry.entry.from}) {
            if (isHere(place))
                return place;
        }
    }
    EntrySearch renamed;
    for (auto step = trail.steps.rbegin(); step != trail.steps.rend(); ++step) {
        const Location &last = step->entry.entry.to;
        for (const EntryMark &mark : trail.marks) {
            if (std::optional<Location> place = last.empty() ? std::nullopt : renamed.find(last, mark))
                return place;
            if (std::optional<Location> place = trash.find(last, mark.state.identity))
                return place;
        }
    }
    return std::nullopt;
}

} // namespace brellin
