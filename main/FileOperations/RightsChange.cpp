#include "FileOperations/RightsChange.h"

#include "Base/German.h"
#include "Disk/Walk.h"
#include "FileOperations/RecordedAction.h"

#include <algorithm>
#include <iterator>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::uint32_t executeBits = S_IXUSR | S_IXGRP | S_IXOTH;
constexpr std::uint32_t setIdBits = S_ISUID | S_ISGID;
/// More would make the history's file grow by megabytes with one step.
constexpr std::size_t mostRecorded = 20'000;

using MayChangeRights = std::function<bool(const Location &)>;

class RightsPlanning {
public:
    RightsPlanning(const RightsWish &wish, const MayChangeRights &mayChange, const JobControl &control)
        : m_wish(wish)
        , m_mayChange(mayChange)
        , m_control(control)
    {
    }

    void take(const Location &entry)
    {
        const Result<ExaminedRights> found = examineRights(entry);
        if (!found) {
            m_plan.failures << EntryFailure{entry, found.error()};
            return;
        }
        if (!found->attributes.isLink())
            m_plan.chosen.push_back(*found);
        if (add(entry, *found, RightsWish::Place::Chosen) && m_wish.inside && found->attributes.isFolder())
            takeInside(entry);
    }

    /// A folder comes before its content in a walk.
    RightsPlan plan() &&
    {
        std::ranges::reverse(m_plan.entries);
        return std::move(m_plan);
    }

private:
    void takeInside(const Location &folder)
    {
        WalkOptions options;
        options.otherVolumes = false;
        const auto visit = [this](const WalkEntry &one) {
            const Location entry = one.location();
            if (one.attributes.kind == EntryKind::Link) {
                ++m_plan.links;
                return WalkStep::Continue;
            }
            const Result<ExaminedRights> found = examineRights(entry);
            const bool mine = found && add(entry, *found, RightsWish::Place::Inside);
            return mine ? WalkStep::Continue : WalkStep::SkipFolder;
        };
        const Result<WalkOutcome> walked = walk(folder, options, visit, &m_control);
        m_plan.unreadable += walked ? static_cast<int>(walked->unreadable.size()) : 1;
    }

    /// False if the entry, and all in it, is to be left alone.
    bool add(const Location &entry, const ExaminedRights &found, RightsWish::Place place)
    {
        if (found.attributes.isLink()) {
            ++m_plan.links;
            return false;
        }
        if (m_mayChange && !m_mayChange(entry)) {
            ++m_plan.system;
            return false;
        }
        const EntryRights wanted = m_wish.appliedTo(found, place);
        if (wanted == found.rights)
            return true;
        if (::geteuid() != 0 && found.rights.owner != ::geteuid()) {
            ++m_plan.foreign;
            return true;
        }
        m_plan.entries.push_back({entry, EntryMark::of(found.attributes), found.rights, wanted});
        m_plan.accessLists += found.accessList ? 1 : 0;
        m_plan.severalNames += found.attributes.isFile() && found.attributes.links > 1 ? 1 : 0;
        m_plan.setIds += (found.rights.mode & ~wanted.mode & setIdBits) != 0 ? 1 : 0;
        return true;
    }

    const RightsWish &m_wish;
    const MayChangeRights &m_mayChange;
    const JobControl &m_control;
    RightsPlan m_plan;
};

std::vector<StepEntry> stepEntriesOf(const RightsPlan &plan)
{
    std::vector<StepEntry> entries;
    std::ranges::transform(plan.entries, std::back_inserter(entries), [](const RightsPlan::Entry &one) {
        StepEntry entry{one.entry, one.entry, one.mark};
        entry.rights = RightsStep{one.before, one.wanted};
        return entry;
    });
    return entries;
}

void carryOut(const RightsPlan &plan, OperationOutcome &outcome, JobControl &control)
{
    control.setTotal(std::ssize(plan.entries));
    for (const RightsPlan::Entry &one : plan.entries) {
        if (control.cancelled()) {
            outcome.cancelled = true;
            return;
        }
        const Result<EntryRights> now = setRights(one.entry, one.mark, one.before, one.wanted);
        if (now) {
            UserAction::Entry done{one.entry, one.entry, one.mark.state};
            done.created = one.mark.created;
            done.rights = RightsStep{one.before, *now};
            outcome.action.entries.push_back(std::move(done));
        } else {
            outcome.failures << EntryFailure{one.entry, now.error()};
        }
        control.advance();
    }
}

} // namespace

EntryRights RightsWish::appliedTo(const ExaminedRights &entry, Place place) const
{
    const std::uint32_t mode = entry.rights.mode;
    const bool runs = !entry.attributes.isFile() || (mode & executeBits) != 0 || place == Place::Chosen;
    EntryRights wanted{(mode | (runs ? set : set & ~executeBits)) & ~clear, owner.value_or(entry.rights.owner),
                       group.value_or(entry.rights.group)};
    // A program must not run with the rights of an owner it was not made for.
    const bool otherOwner = wanted.owner != entry.rights.owner || wanted.group != entry.rights.group;
    if (otherOwner && entry.attributes.isFile())
        wanted.mode &= ~setIdBits;
    return wanted;
}

RightsPlan planRights(const std::vector<Location> &entries, const RightsWish &wish,
                      const std::function<bool(const Location &)> &mayChange, const JobControl &control)
{
    RightsPlanning planning(wish, mayChange, control);
    for (const Location &entry : entries)
        planning.take(entry);
    return std::move(planning).plan();
}

QStringList rightsNotes(const RightsPlan &plan)
{
    QStringList notes;
    const auto note = [&notes](int count, const QString &one, const QString &several) {
        if (count == 1)
            notes << one;
        else if (count > 1)
            notes << several.arg(german().toString(count));
    };
    note(plan.accessLists,
         QStringLiteral("Ein Eintrag hat eine Zugriffsliste (ACL): Die Rechte der Gruppe begrenzen, was sie erlaubt."),
         QStringLiteral("%1 Einträge haben Zugriffslisten (ACL): Die Rechte der Gruppe begrenzen, was sie erlauben."));
    note(plan.setIds, QStringLiteral("Eine Datei verliert dabei ihr Set-ID-Bit."),
         QStringLiteral("%1 Dateien verlieren dabei ihr Set-ID-Bit."));
    note(plan.severalNames, QStringLiteral("Eine Datei hat mehrere Namen (Hardlinks); ihre Rechte gelten für alle."),
         QStringLiteral("%1 Dateien haben mehrere Namen (Hardlinks); ihre Rechte gelten für alle."));
    note(plan.foreign, QStringLiteral("Ein Eintrag gehört jemand anderem und bleibt, wie er ist."),
         QStringLiteral("%1 Einträge gehören jemand anderem und bleiben, wie sie sind."));
    note(plan.system, QStringLiteral("Ein Eintrag gehört zum System und bleibt, wie er ist."),
         QStringLiteral("%1 Einträge gehören zum System und bleiben, wie sie sind."));
    note(plan.unreadable, QStringLiteral("Ein Ordner ist nicht lesbar; sein Inhalt bleibt, wie er ist."),
         QStringLiteral("%1 Ordner sind nicht lesbar; ihr Inhalt bleibt, wie er ist."));
    note(plan.links, QStringLiteral("Ein Verweis bleibt, wie er ist; Rechte hat nur sein Ziel."),
         QStringLiteral("%1 Verweise bleiben, wie sie sind; Rechte haben nur ihre Ziele."));
    return notes;
}

OperationOutcome changeRights(const std::vector<Location> &entries, const RightsWish &wish,
                              const std::function<bool(const Location &)> &mayChange, StepRecords *records,
                              JobControl &control)
{
    const RightsPlan plan = planRights(entries, wish, mayChange, control);
    OperationOutcome outcome{{UserAction::Kind::Rights, {}}, plan.failures, control.cancelled()};
    if (outcome.cancelled || plan.entries.empty())
        return outcome;
    const bool keeps = records && plan.entries.size() <= mostRecorded;
    OpenStep step = keeps ? records->begin(StepKind::Rights, stepEntriesOf(plan)) : OpenStep();
    carryOut(plan, outcome, control);
    if (keeps)
        outcome.action.step = step.id();
    step.settle(stepEntries(outcome.action.entries));
    return outcome;
}

} // namespace brellin
