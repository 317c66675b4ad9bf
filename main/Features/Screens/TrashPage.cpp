#include "Features/Screens/TrashPage.h"

#include "Base/German.h"
#include "Features/Screens/TrashRows.h"
#include "Look/BusyBar.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/TableDelegate.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QShowEvent>
#include <QStackedLayout>
#include <QTreeView>

namespace brellin {

struct TrashPage::Private {
    Private(TrashPage &page, TrashList &list, const KnownFolders &folders)
        : q(page)
        , trash(list)
        , rows(list, folders, &page)
        , order(rows, &page)
    {
    }

    void build();
    QLayout *buildHead();
    void buildTable();
    void buildReport();
    void connectAll();

    std::vector<TrashItem> selected() const;
    std::vector<Location> selectedPlaces() const;
    void putBackSelected();
    void deleteSelected();
    void tell(const QString &title, const EntryFailures &failures);
    void finished(const TrashReturn &outcome);
    void showPlace();
    void showMenu(QPoint at);
    void refreshAll();
    QString summary() const;

    TrashPage &q;
    TrashList &trash;
    TrashRows rows;
    TrashOrder order;
    TextLabel *counts = nullptr;
    QLineEdit *filter = nullptr;
    QPushButton *emptying = nullptr;
    SymbolButton *deleting = nullptr;
    QPushButton *place = nullptr;
    QPushButton *back = nullptr;
    QPushButton *stop = nullptr;
    QProgressBar *progress = nullptr;
    QTreeView *table = nullptr;
    EmptyState *empty = nullptr;
    QStackedLayout *stack = nullptr;
    Card *report = nullptr;
    TextLabel *reportTitle = nullptr;
    TextLabel *reportText = nullptr;
};

TrashPage::TrashPage(TrashList &trash, const KnownFolders &folders, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, trash, folders))
{
    setObjectName(QStringLiteral("trashPage"));
    setAccessibleName(QStringLiteral("Papierkorb"));
    d->build();
    d->connectAll();
    d->refreshAll();
    setFocusProxy(d->table);
}

TrashPage::~TrashPage() = default;

/// Refresh on activation: another process may have used the Trash.
bool TrashPage::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate && isVisible())
        d->trash.refresh();
    return QWidget::event(event);
}

void TrashPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        d->trash.refresh();
}

void TrashPage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    const QRect list = d->stack->currentWidget()->geometry();
    painter.fillRect(list, color(Token::Content));
    painter.fillRect(QRect(0, list.top() - 1, width(), 1), color(Token::Line));
}

void TrashPage::Private::build()
{
    auto *const column = new QVBoxLayout(&q);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(buildHead());
    // Keeps its space when hidden, so that the list does not jump.
    progress = makeBusyBar(QStringLiteral("Der Papierkorb wird gelesen"), QStringLiteral("trashProgress"),
                           WhenHidden::KeepsRoom, &q);
    column->addWidget(progress);
    buildTable();
    empty = new EmptyState(QStringLiteral("trash"), {}, {}, &q);
    empty->setObjectName(QStringLiteral("trashEmpty"));
    stack = new QStackedLayout;
    stack->addWidget(table);
    stack->addWidget(empty);
    column->addLayout(stack, 1);
    buildReport();
    column->addWidget(report);
}

QLayout *TrashPage::Private::buildHead()
{
    auto *const head = new QHBoxLayout;
    head->setContentsMargins(scaled(14), scaled(12), scaled(14), scaled(10));
    head->setSpacing(scaled(8));
    auto *const titles = new QVBoxLayout;
    titles->setSpacing(scaled(2));
    titles->addWidget(makeTitle(QStringLiteral("Papierkorb"), &q));
    counts = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, &q);
    counts->setObjectName(QStringLiteral("trashCounts"));
    titles->addWidget(counts);
    head->addLayout(titles);
    head->addStretch(1);
    filter = new QLineEdit(&q);
    filter->setObjectName(QStringLiteral("trashFilter"));
    filter->setAccessibleName(QStringLiteral("Im Papierkorb suchen"));
    filter->setPlaceholderText(QStringLiteral("Im Papierkorb suchen"));
    filter->setClearButtonEnabled(true);
    filter->setMinimumWidth(scaled(140));
    filter->setMaximumWidth(scaled(240));
    filter->addAction(Symbols::icon(QStringLiteral("magnifyingglass"), Token::Tertiary), QLineEdit::LeadingPosition);
    head->addWidget(filter, 1);
    emptying =
        makeButton(QStringLiteral("Papierkorb leeren …"), ButtonKind::Usual, QStringLiteral("trashEmptyAll"), &q);
    deleting = new SymbolButton(QStringLiteral("trash-2"), QStringLiteral("Endgültig löschen … (Umschalt+Entf)"),
                                QStringLiteral("trashDelete"), &q, Token::Danger);
    place = makeButton(QStringLiteral("Ort zeigen"), ButtonKind::Usual, QStringLiteral("trashShowPlace"), &q);
    back = makeButton(QStringLiteral("Zurücklegen"), ButtonKind::Primary, QStringLiteral("trashPutBack"), &q,
                      QStringLiteral("undo-2"));
    stop = makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("trashStop"), &q);
    for (QWidget *const button : std::initializer_list<QWidget *>{emptying, place, deleting, back, stop})
        head->addWidget(button);
    return head;
}

void TrashPage::Private::buildTable()
{
    table = new QTreeView(&q);
    table->setObjectName(QStringLiteral("trashTable"));
    table->setAccessibleName(QStringLiteral("Inhalt des Papierkorbs"));
    table->setModel(&order);
    dressTable(*table);
    table->sortByColumn(TrashRows::Deleted, Qt::DescendingOrder);
    QHeaderView &header = *table->header();
    header.setSectionResizeMode(TrashRows::Name, QHeaderView::Stretch);
    header.setSectionResizeMode(TrashRows::Place, QHeaderView::Stretch);
    header.resizeSection(TrashRows::Deleted, scaled(130));
    header.resizeSection(TrashRows::Size, scaled(90));
}

void TrashPage::Private::buildReport()
{
    report = new Card(&q);
    report->setObjectName(QStringLiteral("trashReport"));
    const int margin = shadowReach() + scaled(12);
    report->content()->setContentsMargins(margin, margin, margin, margin);
    auto *const line = new QHBoxLayout;
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(4));
    reportTitle = makeBody({}, report);
    reportTitle->setObjectName(QStringLiteral("trashReportTitle"));
    reportText = makeSecondary({}, report);
    reportText->setObjectName(QStringLiteral("trashReportText"));
    reportText->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    texts->addWidget(reportTitle);
    texts->addWidget(reportText);
    line->addLayout(texts, 1);
    auto *const close =
        new SymbolButton(QStringLiteral("x"), QStringLiteral("Schließen"), QStringLiteral("trashReportClose"), report);
    line->addWidget(close, 0, Qt::AlignTop);
    report->content()->addLayout(line);
    report->hide();
    connect(close, &QToolButton::clicked, report, &QWidget::hide);
}

void TrashPage::Private::connectAll()
{
    connect(filter, &QLineEdit::textChanged, &q, [this](const QString &text) {
        order.setWanted(text);
        refreshAll();
    });
    connect(back, &QPushButton::clicked, &q, [this] { putBackSelected(); });
    connect(emptying, &QPushButton::clicked, &q, &TrashPage::emptyWanted);
    connect(deleting, &QToolButton::clicked, &q, [this] { deleteSelected(); });
    connect(stop, &QPushButton::clicked, &q, [this] { trash.cancel(); });
    connect(place, &QPushButton::clicked, &q, [this] { showPlace(); });
    connect(table, &QWidget::customContextMenuRequested, &q, [this](QPoint at) { showMenu(at); });
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, &q, [this] { refreshAll(); });
    connect(table, &QTreeView::activated, &q, [this] { showPlace(); });
    auto *const putting = new QShortcut(Qt::CTRL | Qt::Key_Return, table, [this] { putBackSelected(); });
    putting->setContext(Qt::WidgetShortcut);
    auto *const remove = new QShortcut(Qt::SHIFT | Qt::Key_Delete, table, [this] { deleteSelected(); });
    remove->setContext(Qt::WidgetShortcut);
    auto *const find = new QShortcut(QKeySequence::Find, &q, [this] { filter->setFocus(Qt::ShortcutFocusReason); });
    find->setContext(Qt::WidgetWithChildrenShortcut);
    connect(&order, &QAbstractItemModel::layoutChanged, &q, [this] { refreshAll(); });
    trash.items.observe(&q, [this](const auto &) { refreshAll(); });
    trash.loading.observe(&q, [this](bool) { refreshAll(); });
    trash.returning.observe(&q, [this](bool) { refreshAll(); });
}

std::vector<TrashItem> TrashPage::Private::selected() const
{
    std::vector<TrashItem> items;
    for (const QModelIndex &index : table->selectionModel()->selectedRows())
        items.push_back(rows.item(order.mapToSource(index)));
    return items;
}

std::vector<Location> TrashPage::Private::selectedPlaces() const
{
    std::vector<Location> places;
    for (const TrashItem &item : selected())
        places.push_back(item.entry.place);
    return places;
}

void TrashPage::Private::deleteSelected()
{
    if (deleting->isEnabled())
        Q_EMIT q.deleteWanted(selectedPlaces());
}

void TrashPage::Private::putBackSelected()
{
    const std::vector<Location> places = selectedPlaces();
    if (places.empty() || trash.returning.get())
        return;
    report->hide();
    trash.putBack(places, &q, [this](const TrashReturn &outcome) { finished(outcome); });
}

void TrashPage::Private::finished(const TrashReturn &outcome)
{
    if (!outcome.returned.empty())
        Q_EMIT q.returned(outcome.returned);
    const auto count = static_cast<qint64>(outcome.returned.size());
    QString title = counted(count, QStringLiteral("Element zurückgelegt."), QStringLiteral("Elemente zurückgelegt."));
    if (!outcome.failures.isEmpty()) {
        const QString failed = counted(outcome.failures.size(), QStringLiteral("Element blieb im Papierkorb:"),
                                       QStringLiteral("Elemente blieben im Papierkorb:"));
        title = count > 0 ? title + u' ' + failed : failed;
    }
    if (outcome.cancelled)
        title += QStringLiteral(" Abgebrochen, der Rest blieb im Papierkorb.");
    tell(title, outcome.failures);
}

void TrashPage::tellDeleted(const EntryFailures &failures, bool cancelled)
{
    const QString failed = counted(failures.size(), QStringLiteral("Element blieb im Papierkorb:"),
                                   QStringLiteral("Elemente blieben im Papierkorb:"));
    d->tell(!failures.isEmpty() ? failed
            : cancelled         ? QStringLiteral("Abgebrochen, der Rest blieb im Papierkorb.")
                                : QStringLiteral("Endgültig gelöscht."),
            failures);
    d->trash.refresh();
}

void TrashPage::Private::tell(const QString &title, const EntryFailures &failures)
{
    constexpr qsizetype most = 6;
    QStringList lines = linesOf(failures.mid(0, most));
    if (failures.size() > most)
        lines << QStringLiteral("… und %1 weitere").arg(failures.size() - most);
    reportTitle->setText(title);
    reportTitle->setToken(failures.isEmpty() ? Token::Success : Token::Danger);
    reportText->setText(lines.join(u'\n'));
    reportText->setVisible(!lines.isEmpty());
    report->show();
}

void TrashPage::Private::showPlace()
{
    const std::vector<TrashItem> items = selected();
    if (items.size() == 1 && !items.front().entry.original.empty())
        Q_EMIT q.placeWanted(items.front().entry.original.parent_path());
}

void TrashPage::Private::showMenu(QPoint at)
{
    if (selected().empty())
        return;
    auto *const menu = new QMenu(&q);
    menu->setObjectName(QStringLiteral("trashMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *const putting = menu->addAction(Symbols::icon(QStringLiteral("undo-2")), QStringLiteral("Zurücklegen"),
                                             back, &QPushButton::click);
    putting->setObjectName(QStringLiteral("menuPutBack"));
    putting->setEnabled(back->isEnabled());
    QAction *const showing = menu->addAction(Symbols::icon(QStringLiteral("folder-open")), QStringLiteral("Ort zeigen"),
                                             place, &QPushButton::click);
    showing->setObjectName(QStringLiteral("menuShowPlace"));
    showing->setEnabled(place->isEnabled());
    QAction *const removing = menu->addAction(Symbols::icon(QStringLiteral("trash-2")),
                                              QStringLiteral("Endgültig löschen …"), &q, [this] { deleteSelected(); });
    removing->setObjectName(QStringLiteral("menuDelete"));
    removing->setEnabled(deleting->isEnabled());
    menu->popup(table->viewport()->mapToGlobal(at));
}

void TrashPage::Private::refreshAll()
{
    const std::vector<TrashItem> items = selected();
    const bool known = std::ranges::none_of(items, [](const TrashItem &one) { return one.entry.original.empty(); });
    const bool returning = trash.returning.get();
    back->setVisible(!returning);
    stop->setVisible(returning);
    back->setEnabled(!items.empty() && known && !returning);
    back->setToolTip(items.empty() ? QStringLiteral("Wähle aus, was zurückgelegt werden soll.")
                     : !known      ? QStringLiteral("Woher dies kam, ist nicht bekannt.")
                                   : QStringLiteral("Legt die Auswahl dorthin, woher sie kam (Strg+Enter)"));
    deleting->setEnabled(!items.empty() && !returning);
    emptying->setEnabled(!trash.items.get().empty() && !returning);
    place->setEnabled(items.size() == 1 && known);
    place->setToolTip(items.size() == 1 ? QStringLiteral("Öffnet den Ordner, aus dem dies kam (Enter)")
                                        : QStringLiteral("Wähle ein einzelnes Element aus."));
    progress->setVisible(returning || trash.loading.get());
    counts->setText(summary());
    const bool nothing = order.rowCount() == 0;
    if (nothing && !filter->text().trimmed().isEmpty())
        empty->setTexts(QStringLiteral("Nichts gefunden"),
                        QStringLiteral("Im Papierkorb heißt nichts so und nichts kam von dort."));
    else if (nothing)
        empty->setTexts(trash.loading.get() ? QStringLiteral("Der Papierkorb wird gelesen …")
                                            : QStringLiteral("Der Papierkorb ist leer"),
                        QStringLiteral("Was du in den Papierkorb legst, steht hier, bis du es zurücklegst."));
    stack->setCurrentWidget(nothing ? static_cast<QWidget *>(empty) : table);
}

/// The number and size of all entries, or of the selected ones.
QString TrashPage::Private::summary() const
{
    std::vector<TrashItem> items = selected();
    const bool chosen = !items.empty();
    if (!chosen)
        items = trash.items.get();
    return amountText(amountOf(items), (chosen ? QStringLiteral(" ausgewählt") : QString()) + QStringLiteral(" · "));
}

} // namespace brellin
