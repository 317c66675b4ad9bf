#include "Agent/Screens/RuleListSheet.h"

#include "Agent/AgentKeys.h"
#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/DamageNotice.h"
#include "Agent/Screens/NoticeBar.h"
#include "Agent/Screens/RuleListRow.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>

#include <algorithm>

namespace brellin {

RuleListSheet::RuleListSheet(const AgentPorts &ports, QWidget *window)
    : SheetFrame(title(AgentSheet::CleanupRules), subtitle(AgentSheet::CleanupRules), {900, 674}, window)
    , m_ports(ports)
    , m_model(ports.agent, ports.services.folders.home, this)
{
    setObjectName(QStringLiteral("ruleListSheet"));
    content()->setContentsMargins(scaled(12), scaled(10), scaled(12), scaled(10));
    m_notice = new NoticeBar(QStringLiteral("Rückgängig"), QStringLiteral("ruleNotice"), this);
    connect(m_notice, &NoticeBar::clicked, this, &RuleListSheet::restore);
    content()->addWidget(m_notice);
    content()->addWidget(new DamageNotice(m_ports.agent, this));
    buildList();
    content()->addWidget(makeSecondary(
        QStringLiteral("Regeln werden von oben nach unten geprüft. Jede Datei wird nur von einer Regel erfasst."),
        this));
    buildActions();
    buildButtons();
    connect(&m_model, &RuleListModel::failed, this, [this](const QString &why) { tell({why, {}}); });
    connect(&m_model, &QAbstractItemModel::modelReset, this, [this] { select(m_current); });
    m_ports.agent.damaged.observe(this, [this](const auto &) { refresh(); });
    m_list->setCurrentIndex(m_model.index(0));
    refresh();
}

void RuleListSheet::buildList()
{
    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("ruleList"));
    m_list->setAccessibleName(QStringLiteral("Regeln"));
    m_list->setModel(&m_model);
    m_list->setItemDelegate(new RuleListRow(m_model, m_list));
    m_list->setVerticalScrollMode(QListView::ScrollPerPixel);
    m_list->setEditTriggers(QListView::NoEditTriggers);
    m_list->setDragDropMode(QListView::InternalMove);
    m_list->setDropIndicatorShown(true);
    m_list->setMinimumHeight(scaled(180));
    QSizePolicy place = m_list->sizePolicy();
    place.setRetainSizeWhenHidden(true); // keeps the rest of the sheet in place
    m_list->setSizePolicy(place);
    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    content()->addWidget(m_list, 1);
    connect(m_list, &QListView::doubleClicked, this, [this](const QModelIndex &) { edit(); });
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &now) {
        if (now.isValid())
            m_current = m_model.at(now.row()).id;
        refresh();
    });
}

QPushButton *RuleListSheet::action(const QString &title, const QString &symbol, const QString &objectName)
{
    return makeButton(title, ButtonKind::Plain, objectName, this, symbol);
}

void RuleListSheet::buildActions()
{
    m_edit = action(QStringLiteral("Bearbeiten …"), QStringLiteral("pencil"), QStringLiteral("ruleEdit"));
    m_duplicate = action(QStringLiteral("Verdoppeln"), QStringLiteral("copy"), QStringLiteral("ruleDuplicate"));
    m_remove = action(QStringLiteral("Löschen"), QStringLiteral("trash-2"), QStringLiteral("ruleRemove"));
    m_up = action(QStringLiteral("Nach oben"), QStringLiteral("arrow-up"), QStringLiteral("ruleUp"));
    m_down = action(QStringLiteral("Nach unten"), QStringLiteral("arrow-down"), QStringLiteral("ruleDown"));
    m_up->setToolTip(QStringLiteral("Früher prüfen (Alt+↑)"));
    m_down->setToolTip(QStringLiteral("Später prüfen (Alt+↓)"));
    auto *const row = new QHBoxLayout;
    for (QPushButton *const one : {m_edit, m_duplicate, m_remove, m_up, m_down})
        row->addWidget(one);
    row->addStretch(1);
    content()->addLayout(row);
    connect(m_edit, &QPushButton::clicked, this, &RuleListSheet::edit);
    connect(m_duplicate, &QPushButton::clicked, this, &RuleListSheet::duplicate);
    connect(m_remove, &QPushButton::clicked, this, &RuleListSheet::remove);
    connect(m_up, &QPushButton::clicked, this, [this] { move(-1); });
    connect(m_down, &QPushButton::clicked, this, [this] { move(1); });
}

void RuleListSheet::buildButtons()
{
    m_examples = makeButton(QStringLiteral("Beispielregeln hinzufügen"), ButtonKind::Usual,
                            QStringLiteral("ruleExamples"), this);
    m_new = makeButton(QStringLiteral("Neue Regel …"), ButtonKind::Usual, QStringLiteral("ruleNew"), this,
                       QStringLiteral("plus"));
    QPushButton *const done =
        makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("rulesDone"), this);
    for (QPushButton *const one : {m_examples, m_new, done})
        buttons()->addWidget(one);
    connect(m_examples, &QPushButton::clicked, this, [this] {
        const std::size_t before = m_ports.agent.rules.get().size();
        if (const Result<void> added = m_ports.agent.addExampleRules(); !added)
            return tell(added.error());
        if (m_ports.agent.rules.get().size() == before)
            tell({QStringLiteral("Alle Beispielregeln sind schon da."), {}});
    });
    connect(m_new, &QPushButton::clicked, this,
            [this] { Q_EMIT editRequested(newRule(m_ports.services.folders.dir(StandardFolder::Downloads))); });
    connect(done, &QPushButton::clicked, this, [this] { close(); });
}

const CleanupRule *RuleListSheet::current() const
{
    const QModelIndex index = m_list->currentIndex();
    return index.isValid() ? &m_model.at(index.row()) : nullptr;
}

void RuleListSheet::select(const QUuid &rule)
{
    const int row = m_model.rowOf(rule);
    m_list->setCurrentIndex(m_model.index(std::max(row, 0)));
    refresh();
}

void RuleListSheet::refresh()
{
    const QModelIndex index = m_list->currentIndex();
    const bool known = !isDamaged(m_ports.agent, AgentKeys::rules); // otherwise the model holds the examples
    const bool any = known && index.isValid();
    m_list->setVisible(known);
    for (QPushButton *const one : {m_examples, m_new})
        one->setEnabled(known);
    for (QPushButton *const one : {m_edit, m_duplicate, m_remove})
        one->setEnabled(any);
    m_up->setEnabled(any && index.row() > 0);
    m_down->setEnabled(any && index.row() + 1 < m_model.rowCount());
}

void RuleListSheet::tell(const Failure &why)
{
    m_removed.reset();
    m_notice->tell(why.message, Token::Warning, Token::WarningSoft);
}

void RuleListSheet::edit()
{
    if (const CleanupRule *const rule = current())
        Q_EMIT editRequested(*rule);
}

void RuleListSheet::move(int by)
{
    const CleanupRule *const rule = current();
    const int place = m_list->currentIndex().row() + by;
    if (!rule || place < 0 || place >= m_model.rowCount())
        return;
    if (const Result<void> moved = m_ports.agent.moveRule(rule->id, static_cast<std::size_t>(place)); !moved)
        tell(moved.error());
}

void RuleListSheet::duplicate()
{
    const CleanupRule *const rule = current();
    if (!rule)
        return;
    const Result<QUuid> copy = m_ports.agent.duplicateRule(rule->id);
    if (!copy)
        return tell(copy.error());
    select(*copy);
}

void RuleListSheet::remove()
{
    const CleanupRule *const rule = current();
    if (!rule)
        return;
    const int row = m_list->currentIndex().row();
    const Result<RemovedRule> removed = m_ports.agent.removeRule(QUuid(rule->id));
    if (!removed)
        return tell(removed.error());
    m_removed = *removed;
    m_notice->tell(QStringLiteral("Regel „%1“ gelöscht.").arg(removed->rule.name));
    m_list->setCurrentIndex(m_model.index(std::min(row, m_model.rowCount() - 1)));
    refresh();
}

void RuleListSheet::restore()
{
    if (!m_removed)
        return m_notice->tell({});
    const RemovedRule removed = *m_removed;
    if (const Result<void> restored = m_ports.agent.restoreRule(removed); !restored)
        return tell(restored.error());
    m_removed.reset();
    m_notice->tell({});
    select(removed.rule.id);
}

bool RuleListSheet::takesKey(QKeyEvent *event)
{
    const bool alt = event->modifiers().testFlag(Qt::AltModifier);
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (alt)
            move(event->key() == Qt::Key_Up ? -1 : 1);
        return alt;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        edit();
        return true;
    case Qt::Key_Delete:
        remove();
        return true;
    case Qt::Key_Space:
        if (const QModelIndex index = m_list->currentIndex(); index.isValid())
            m_model.setData(index, m_model.at(index.row()).enabled ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        return true;
    default:
        return false;
    }
}

bool RuleListSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list && event->type() == QEvent::ShortcutOverride) {
        event->accept(); // not a shortcut of the window
        return true;
    }
    if (watched == m_list && event->type() == QEvent::KeyPress && takesKey(static_cast<QKeyEvent *>(event)))
        return true;
    if (m_list && watched == m_list->viewport() && event->type() == QEvent::MouseButtonPress) {
        const QPoint place = static_cast<QMouseEvent *>(event)->pos();
        const QModelIndex index = m_list->indexAt(place);
        if (index.isValid() && RuleListRow::isOnTick(m_list->visualRect(index), place)) {
            m_list->setCurrentIndex(index);
            m_model.setData(index, m_model.at(index.row()).enabled ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
            return true;
        }
    }
    return SheetFrame::eventFilter(watched, event);
}

} // namespace brellin
