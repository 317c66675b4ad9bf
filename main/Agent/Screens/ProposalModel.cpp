#include "Agent/Screens/ProposalModel.h"

#include "Agent/Screens/AgentTexts.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace brellin {

namespace {

using Row = ProposalModel::Row;

/// Above this number of separate insertions and removals a reset is cheaper for the views.
constexpr int mostPieces = 40;

QSet<QByteArray> identities(const std::vector<Row> &rows)
{
    QSet<QByteArray> all;
    all.reserve(static_cast<qsizetype>(rows.size()));
    for (const Row &row : rows)
        all.insert(row.identity);
    return all;
}

/// The rows that are also in `others`, by identity, in order.
std::vector<QByteArray> kept(const std::vector<Row> &rows, const QSet<QByteArray> &others)
{
    std::vector<QByteArray> left;
    for (const Row &row : rows)
        if (others.contains(row.identity))
            left.push_back(row.identity);
    return left;
}

/// The number of contiguous blocks of rows that are not in `others`.
int piecesWithout(const std::vector<Row> &rows, const QSet<QByteArray> &others)
{
    int pieces = 0;
    bool inside = false;
    for (const Row &row : rows) {
        const bool missing = !others.contains(row.identity);
        pieces += missing && !inside ? 1 : 0;
        inside = missing;
    }
    return pieces;
}

} // namespace

ProposalModel::ProposalModel(CleanupAgent &agent, Location home, QObject *parent)
    : QAbstractListModel(parent)
    , m_agent(agent)
    , m_home(std::move(home))
{
    takeList();
    m_rows = rowsNow();
    m_agent.proposals.observe(this, [this](const auto &) {
        takeList();
        refresh();
    });
    m_agent.chosen.observe(this, [this](const auto &) { refreshTicks(); });
    m_agent.failures.observe(this, [this](const auto &) { changed(); });
}

QString ProposalModel::failureOf(const AgentProposal &proposal) const
{
    const auto found = m_agent.failures.get().find(proposal.id);
    return found != m_agent.failures.get().end() ? found->second : QString();
}

void ProposalModel::setFilter(const QString &text)
{
    m_filter = folded(text.trimmed());
    refresh();
}

/// Unchanged proposals are shared with the rows that show them.
void ProposalModel::takeList()
{
    QHash<QUuid, const Listed *> before;
    for (const Listed &one : m_listed)
        before.insert(one.proposal->id, &one);
    std::vector<Listed> now;
    now.reserve(m_agent.proposals.get().size());
    for (const AgentProposal &one : m_agent.proposals.get()) {
        const Listed *const known = before.value(one.id);
        now.push_back(known && *known->proposal == one
                          ? *known
                          : Listed{sameness(one), std::make_shared<const AgentProposal>(one), {}});
    }
    m_listed = std::move(now);
}

bool ProposalModel::passes(Listed &one) const
{
    if (m_filter.isEmpty())
        return true;
    if (one.searched.isNull()) {
        const ProposalRoad road = roadOf(*one.proposal, m_home);
        // Separate the fields with a character that nobody types.
        const QStringList texts{shownName(one.proposal->source), road.from.join(u'/'), road.to.join(u'/'),
                                one.proposal->reason};
        one.searched = folded(texts.join(QChar::LineFeed));
    }
    return one.searched.contains(m_filter);
}

std::vector<Row> ProposalModel::rowsNow()
{
    std::vector<const AgentProposal *> visible;
    QHash<QUuid, const Listed *> byId;
    for (Listed &one : m_listed) {
        if (!passes(one))
            continue;
        visible.push_back(one.proposal.get());
        byId.insert(one.proposal->id, &one);
    }
    std::vector<Row> rows;
    for (const ProposalGroup &group : groupsOf(visible, m_agent.chosen.get())) {
        rows.push_back({"group " + QByteArray::number(static_cast<int>(group.kind)), group, nullptr, false});
        for (const QUuid &id : group.proposals) {
            const Listed &one = *byId.value(id);
            rows.push_back({one.identity, std::nullopt, one.proposal, false});
        }
        rows.back().isLast = true;
    }
    return rows;
}

int ProposalModel::rowOf(const QByteArray &identity) const
{
    const auto found = std::ranges::find(m_rows, identity, &Row::identity);
    return found != m_rows.end() ? static_cast<int>(found - m_rows.begin()) : -1;
}

void ProposalModel::refresh()
{
    std::vector<Row> next = rowsNow();
    if (!canBeMended(next)) {
        beginResetModel();
        m_rows = std::move(next);
        endResetModel();
        return;
    }
    removeMissing(next);
    insertNew(next);
    m_rows = std::move(next);
    changed();
}

/// Whether few insertions and removals lead to the new list: common rows are in the same order, and identities are
/// unique.
bool ProposalModel::canBeMended(const std::vector<Row> &next) const
{
    const QSet<QByteArray> before = identities(m_rows);
    const QSet<QByteArray> after = identities(next);
    return before.size() == static_cast<qsizetype>(m_rows.size()) &&
           after.size() == static_cast<qsizetype>(next.size()) &&
           piecesWithout(m_rows, after) + piecesWithout(next, before) <= mostPieces &&
           kept(m_rows, after) == kept(next, before);
}

void ProposalModel::removeMissing(const std::vector<Row> &next)
{
    const QSet<QByteArray> after = identities(next);
    const auto stays = [&](int row) { return after.contains(at(row).identity); };
    for (int last = rowCount() - 1; last >= 0; --last) {
        if (stays(last))
            continue;
        int first = last;
        while (first > 0 && !stays(first - 1))
            --first;
        beginRemoveRows({}, first, last);
        m_rows.erase(m_rows.begin() + first, m_rows.begin() + last + 1);
        endRemoveRows();
        last = first;
    }
}

void ProposalModel::insertNew(const std::vector<Row> &next)
{
    const QSet<QByteArray> before = identities(m_rows);
    const auto isNew = [&](std::size_t row) { return !before.contains(next[row].identity); };
    for (std::size_t first = 0; first < next.size(); ++first) {
        if (!isNew(first))
            continue;
        std::size_t end = first;
        while (end < next.size() && isNew(end))
            ++end;
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(first),
                      next.begin() + static_cast<std::ptrdiff_t>(first),
                      next.begin() + static_cast<std::ptrdiff_t>(end));
        endInsertRows();
        first = end;
    }
}

void ProposalModel::refreshTicks()
{
    ProposalGroup *group = nullptr;
    for (Row &row : m_rows) {
        if (row.group) {
            group = &*row.group;
            group->ticked = 0;
            group->tickedBytes = 0;
        } else if (isTicked(*row.proposal)) {
            ++group->ticked;
            group->tickedBytes += bytesOf(*row.proposal).value_or(0);
        }
    }
    changed();
}

void ProposalModel::changed()
{
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void ProposalModel::toggle(int row)
{
    if (m_agent.running.get())
        return;
    const Row &toggled = at(row);
    if (toggled.proposal) {
        m_agent.setChosen(toggled.proposal->id,
                          isTicked(*toggled.proposal) ? CleanupAgent::Tick::Off : CleanupAgent::Tick::On);
        return;
    }
    std::set<QUuid> ticked = m_agent.chosen.get();
    const bool on = toggled.group->tick() != GroupTick::All;
    for (const QUuid &id : toggled.group->proposals) {
        if (on)
            ticked.insert(id);
        else
            ticked.erase(id);
    }
    m_agent.choose(ticked);
}

std::set<QUuid> ProposalModel::unticked() const
{
    std::set<QUuid> ids;
    for (const AgentProposal &proposal : m_agent.proposals.get())
        if (!isTicked(proposal))
            ids.insert(proposal.id);
    return ids;
}

std::size_t ProposalModel::visibleUnticked() const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(m_rows, [this](const Row &row) { return row.proposal && !isTicked(*row.proposal); }));
}

int ProposalModel::hiddenTicked() const
{
    const auto visible =
        std::ranges::count_if(m_rows, [this](const Row &row) { return row.proposal && isTicked(*row.proposal); });
    return static_cast<int>(static_cast<std::ptrdiff_t>(m_agent.chosen.get().size()) - visible);
}

int ProposalModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ProposalModel::data(const QModelIndex &index, int role) const
{
    const Row &row = at(index.row());
    if (role == Qt::CheckStateRole) {
        if (row.proposal)
            return static_cast<int>(isTicked(*row.proposal) ? Qt::Checked : Qt::Unchecked);
        const GroupTick tick = row.group->tick();
        return static_cast<int>(tick == GroupTick::All    ? Qt::Checked
                                : tick == GroupTick::Some ? Qt::PartiallyChecked
                                                          : Qt::Unchecked);
    }
    if (role == Qt::DisplayRole)
        return row.group ? row.group->title() : shownName(row.proposal->source);
    if (role == Qt::AccessibleTextRole)
        return row.group ? row.group->title() + QStringLiteral(", ") + row.group->countText()
                         : spokenText(*row.proposal, failureOf(*row.proposal), m_home);
    return {};
}

bool ProposalModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || value == data(index, role))
        return false;
    toggle(index.row());
    return true;
}

Qt::ItemFlags ProposalModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable : Qt::NoItemFlags;
}

} // namespace brellin
