#include "Agent/Screens/RuleListModel.h"

#include <QMimeData>

#include <algorithm>

namespace brellin {

namespace {

const QString ruleType = QStringLiteral("application/x-brellin-rule");

} // namespace

RuleListModel::RuleListModel(CleanupAgent &agent, Location home, QObject *parent)
    : QAbstractListModel(parent)
    , m_agent(agent)
    , m_home(std::move(home))
    , m_rules(agent.rules.get())
{
    m_agent.rules.observe(this, [this](const std::vector<CleanupRule> &rules) {
        beginResetModel();
        m_rules = rules;
        endResetModel();
    });
}

int RuleListModel::rowOf(const QUuid &rule) const
{
    const auto found = std::ranges::find(m_rules, rule, &CleanupRule::id);
    return found != m_rules.end() ? static_cast<int>(found - m_rules.begin()) : -1;
}

QString RuleListModel::summaryOf(int row) const
{
    return ruleSummary(at(row), m_home);
}

int RuleListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rules.size());
}

QVariant RuleListModel::data(const QModelIndex &index, int role) const
{
    const CleanupRule &rule = at(index.row());
    if (role == Qt::DisplayRole)
        return rule.name;
    if (role == Qt::CheckStateRole)
        return static_cast<int>(rule.enabled ? Qt::Checked : Qt::Unchecked);
    if (role == Qt::AccessibleTextRole)
        return QStringLiteral("%1, %2, %3%4")
            .arg(rule.name, summaryOf(index.row()),
                 rule.enabled ? QStringLiteral("eingeschaltet") : QStringLiteral("ausgeschaltet"),
                 rule.automatic ? QStringLiteral(", automatisch") : QString());
    if (role == Qt::ToolTipRole)
        return rule.sourcePath + QStringLiteral("\n") + summaryOf(index.row());
    return {};
}

bool RuleListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole)
        return false;
    CleanupRule rule = at(index.row());
    rule.enabled = value.toInt() == Qt::Checked;
    const Result<void> saved = m_agent.saveRule(rule);
    if (!saved)
        Q_EMIT failed(saved.error().message);
    return saved.has_value();
}

Qt::ItemFlags RuleListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // drop between rows
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsDragEnabled;
}

QStringList RuleListModel::mimeTypes() const
{
    return {ruleType};
}

QMimeData *RuleListModel::mimeData(const QModelIndexList &indexes) const
{
    auto *const made = new QMimeData;
    if (!indexes.isEmpty())
        made->setData(ruleType, at(indexes.front().row()).id.toByteArray());
    return made;
}

bool RuleListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int, const QModelIndex &)
{
    const QUuid rule(data->data(ruleType));
    const int from = rowOf(rule);
    if (action != Qt::MoveAction || from < 0)
        return false;
    const int place = row < 0 ? rowCount() : row;
    // The index after the rule has been removed from its old position.
    const Result<void> moved = m_agent.moveRule(rule, static_cast<std::size_t>(place > from ? place - 1 : place));
    if (!moved)
        Q_EMIT failed(moved.error().message);
    // The list is already updated: keep the view from removing the dragged row.
    return false;
}

} // namespace brellin
