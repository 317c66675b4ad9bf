#include "History/Screens/HistoryRows.h"

#include "Base/German.h"
#include "Base/RecentDate.h"
#include "History/HistoryTexts.h"
#include "Look/Symbols.h"
#include "Look/TableDelegate.h"
#include "Look/Theme.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace brellin {

namespace {

enum Column { What, From, To, When };

QIcon symbolOf(const HistoryEntry &entry)
{
    switch (historyKind(entry.kind)) {
    case HistoryKind::Copied:
        return Symbols::icon(QStringLiteral("copy"), Token::Secondary);
    case HistoryKind::Moved:
        return Symbols::icon(QStringLiteral("folder-input"), Token::Secondary);
    case HistoryKind::Renamed:
        return Symbols::icon(QStringLiteral("text-cursor-input"), Token::Secondary);
    case HistoryKind::Trashed:
        return Symbols::icon(QStringLiteral("trash-2"), Token::Secondary);
    case HistoryKind::Made:
        return Symbols::icon(QStringLiteral("plus"), Token::Secondary);
    case HistoryKind::Permitted:
        return Symbols::icon(QStringLiteral("lock"), Token::Secondary);
    case HistoryKind::Unpacked:
        break;
    }
    return Symbols::icon(QStringLiteral("archive"), Token::Secondary);
}

QString timeText(Instant instant)
{
    return QDateTime::fromMSecsSinceEpoch(
               std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch()).count())
        .toString(QStringLiteral("HH:mm"));
}

bool matches(const EntryTrail &trail, const HistoryFilter &filter)
{
    HistoryStep all;
    for (const EntryTrail::Step &step : trail.steps)
        all.entries.push_back(step.entry);
    return filter.matches(all);
}

/// A heading over the whole width, without stripes.
class HistoryDelegate : public TableDelegate {
public:
    using TableDelegate::TableDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        if (index.parent().isValid()) {
            TableDelegate::paint(painter, option, index);
            return;
        }
        const bool isDay = !(index.flags() & Qt::ItemIsSelectable);
        painter->save();
        painter->fillRect(option.rect,
                          color(option.state & QStyle::State_Selected ? Token::AccentSoft : Token::Content));
        painter->setFont(sizedFont(isDay ? 0.92 : 1, QFont::DemiBold));
        painter->setPen(color(isDay ? Token::Secondary : Token::Text));
        const QRect place = option.rect.adjusted(scaled(8), 0, -scaled(6), isDay ? -scaled(3) : 0);
        painter->drawText(place, Qt::AlignLeft | (isDay ? Qt::AlignBottom : Qt::AlignVCenter),
                          painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle, place.width()));
        painter->restore();
    }
};

} // namespace

HistoryRows::HistoryRows(const KnownFolders &folders, QWidget *parent) : QTreeWidget(parent), m_folders(folders)
{
    setObjectName(QStringLiteral("historyRows"));
    setAccessibleName(QStringLiteral("Schritte"));
    setHeaderLabels({QStringLiteral("Was"), QStringLiteral("Von"), QStringLiteral("Nach"), QStringLiteral("Wann")});
    dressTable(*this);
    setItemDelegate(new HistoryDelegate(this));
    setSortingEnabled(false);
    setRootIsDecorated(true);
    setIndentation(scaled(18));
    setSelectionMode(QAbstractItemView::SingleSelection);
    header()->setSectionResizeMode(What, QHeaderView::Stretch);
    header()->setSectionResizeMode(From, QHeaderView::Interactive);
    header()->setSectionResizeMode(To, QHeaderView::Interactive);
    header()->resizeSection(From, scaled(165));
    header()->resizeSection(To, scaled(165));
    header()->resizeSection(When, scaled(130));
    connect(this, &QTreeWidget::itemExpanded, this, &HistoryRows::fill);
}

/// The style would fill a selected row's branch with the accent.
void HistoryRows::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const
{
    const bool selected = selectionModel()->isSelected(index);
    const bool active = isActiveWindow() && hasFocus();
    painter->fillRect(rect, color(selected && active ? Token::AccentSoft : Token::Content));
    if (selected && !active)
        painter->fillRect(rect, faded(Token::Text, 0.08));
    if (!model()->hasChildren(index))
        return;
    const double side = scaled(14);
    const QRectF place(rect.right() - side, rect.center().y() - side / 2, side, side);
    Symbols::paint(*painter, place,
                   isExpanded(index) ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right"),
                   color(Token::Secondary));
}

const HistoryRow *HistoryRows::current() const
{
    return static_cast<const HistoryRow *>(currentItem());
}

HistoryRow *HistoryRows::rowOf(const HistoryStep &step, const HistoryEntry &entry, HistoryRow::Kind kind) const
{
    const StepEntry &one = entry.entry;
    QString what = historyTexts::sentence(entry);
    if (one.takenBack || step.takenBack)
        what += QStringLiteral(" · rückgängig gemacht");
    const QString from = historyTexts::folderText(one.from.parent_path(), m_folders);
    const QString to = historyTexts::folderText(one.to.parent_path(), m_folders);
    auto *const row = new HistoryRow(kind, {what, from, to == from ? QString() : to, timeText(step.date)});
    row->setIcon(What, symbolOf(entry));
    for (const int column : {From, To})
        row->setToolTip(column, shown(column == From ? one.from : one.to));
    row->by = step.by;
    row->step = step.id;
    row->place = entry.place();
    row->takenBack = one.takenBack || step.takenBack;
    return row;
}

HistoryRow *HistoryRows::rowOf(const HistoryStep &step) const
{
    if (step.by == HistoryStep::By::User && step.entries.size() == 1)
        return rowOf(step, step.entries.front(), HistoryRow::Kind::Step);
    QString what = historyTexts::sentence(step);
    if (step.takenBack)
        what += QStringLiteral(" · rückgängig gemacht");
    auto *const row = new HistoryRow(HistoryRow::Kind::Step, {what, {}, {}, timeText(step.date)});
    const bool agent = step.by == HistoryStep::By::Agent;
    row->setIcon(What, agent || step.entries.empty() ? Symbols::icon(QStringLiteral("wand-sparkles"), Token::Secondary)
                                                     : symbolOf(step.entries.front()));
    row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    row->by = step.by;
    row->step = step.id;
    row->takenBack = step.takenBack;
    return row;
}

HistoryRow *HistoryRows::rowOf(const FoundTrail &found, Instant now) const
{
    const QString name = shownName(found.place && !found.inTrash ? *found.place : found.trail.last());
    auto *const heading = new HistoryRow(
        HistoryRow::Kind::Trail,
        {QStringLiteral("%1 – %2").arg(name, historyTexts::nowText(found.trail, found.place, found.inTrash, m_folders)),
         {},
         {},
         {}});
    heading->place = found.place.value_or(Location());
    const EntryTrail::Step &oldest = found.trail.steps.front();
    heading->trail = oldest.id.toString() + shown(oldest.entry.entry.from) + u'>' + shown(oldest.entry.entry.to);
    for (const EntryTrail::Step &step : found.trail.steps) {
        HistoryRow *const row =
            rowOf({step.by, step.id, step.date, step.entry.entry.takenBack, {}}, step.entry, HistoryRow::Kind::Step);
        row->trail = heading->trail;
        row->entry = heading->childCount();
        row->setText(When, recentDate(step.date, now, OlderDay::Short));
        if (step.by == HistoryStep::By::Agent)
            row->setText(What, row->text(What) + QStringLiteral(" · vom Aufräum-Agenten"));
        heading->addChild(row);
    }
    return heading;
}

void HistoryRows::fill(QTreeWidgetItem *item)
{
    const auto *const row = static_cast<const HistoryRow *>(item);
    const auto step = m_several.find(row->step);
    if (row->kind != HistoryRow::Kind::Step || item->childCount() > 0 || step == m_several.end())
        return;
    QList<QTreeWidgetItem *> entries;
    for (const HistoryEntry &entry : step->second.entries) {
        HistoryRow *const made = rowOf(step->second, entry, HistoryRow::Kind::Entry);
        made->entry = static_cast<int>(entries.size());
        entries.append(made);
    }
    item->addChildren(entries);
}

std::vector<HistoryRow::Key> HistoryRows::opened() const
{
    std::vector<HistoryRow::Key> keys;
    for (QTreeWidgetItemIterator at(const_cast<HistoryRows *>(this)); *at; ++at) {
        if ((*at)->parent() && (*at)->isExpanded())
            keys.push_back(static_cast<const HistoryRow *>(*at)->key());
    }
    return keys;
}

void HistoryRows::showAgain(const std::function<void()> &build)
{
    const HistoryRow::Key chosen = current() ? current()->key() : HistoryRow::Key();
    const std::vector<HistoryRow::Key> open = opened();
    const int scrolled = verticalScrollBar()->value();
    clear();
    m_several.clear();
    build();
    for (QTreeWidgetItemIterator at(this); *at; ++at) {
        const HistoryRow::Key key = static_cast<HistoryRow *>(*at)->key();
        (*at)->setFirstColumnSpanned(!(*at)->parent());
        (*at)->setExpanded(!(*at)->parent() || std::ranges::find(open, key) != open.end());
        if (key == chosen && key.kind != HistoryRow::Kind::Day)
            setCurrentItem(*at);
    }
    verticalScrollBar()->setValue(scrolled);
}

void HistoryRows::showSteps(const std::vector<HistoryStep> &steps, const HistoryFilter &filter, QDate today)
{
    showAgain([&] {
        HistoryRow *heading = nullptr;
        QDate shownDay;
        for (const HistoryStep &step : steps) {
            if (!filter.matches(step))
                continue;
            const QDate day = localDay(step.date);
            if (!heading || day != shownDay) {
                heading = new HistoryRow(HistoryRow::Kind::Day, {historyTexts::dayTitle(day, today), {}, {}, {}});
                heading->setFlags(Qt::ItemIsEnabled);
                addTopLevelItem(heading);
                shownDay = day;
            }
            HistoryRow *const row = rowOf(step);
            heading->addChild(row);
            if (row->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator)
                m_several.emplace(step.id, step);
        }
    });
}

void HistoryRows::showTrails(const std::vector<FoundTrail> &trails, const HistoryFilter &filter, Instant now)
{
    showAgain([&] {
        for (const FoundTrail &found : trails) {
            if (matches(found.trail, filter))
                addTopLevelItem(rowOf(found, now));
        }
    });
}

} // namespace brellin
