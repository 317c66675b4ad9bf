#include "ContentView/Screens/PaneView.h"

#include "ContentView/Screens/ArrangementMenu.h"
#include "ContentView/Screens/DetailsColumns.h"
#include "Look/Buttons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <map>

namespace brellin {

namespace {

/// A strip above the list that shows a failure.
class Banner : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), color(Token::DangerSoft));
    }
};

} // namespace

PaneView::PaneView(BrowserModel &pane, PaneScreenServices services, QWidget *parent)
    : QWidget(parent)
    , m_pane(pane)
    , m_rows(new ItemRows(pane, services.sizes, this))
    , m_pictures(services.colors, services.thumbnails)
    , m_services(services)
    , m_searchBar(new SearchBar(pane, this))
    , m_stack(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("pane"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    buildBanner();
    column->addWidget(m_banner);
    column->addWidget(m_searchBar);
    connect(m_searchBar, &SearchBar::escaped, this, &PaneView::leaveFilters);
    column->addWidget(m_stack, 1);
    buildViews();
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);

    pane.viewMode.observe(this, [this](ViewMode mode) { showMode(mode); });
    pane.renameTarget.observe(this, [this](const std::optional<FileItem> &item) { rename(item); });
    pane.renameRefusal.observe(this, [this](const std::optional<QString> &reason) { showRefusal(reason); });
    pane.refusedPath.observe(this, [this](const auto &) { showMessage(); });
    pane.position.observe(this, [this](const ViewPosition &wanted) { followPosition(wanted); });
    pane.errorMessage.observe(this, [this](const std::optional<QString> &error) {
        if (error)
            addRemedies();
        showMessage();
    });
    pane.emptyText.observe(this, [this](const QString &) { showMessage(); });
    pane.displayedItems.observe(this, [this](const DisplayedItems &) { showMessage(); });
    showMode(pane.viewMode.get());
}

/// Closing the editor emits signals, so disconnect before the views are destroyed.
PaneView::~PaneView()
{
    for (const QAbstractItemView *const one :
         {static_cast<QAbstractItemView *>(m_details), static_cast<QAbstractItemView *>(m_icons)})
        one->itemDelegate()->disconnect(this);
}

void PaneView::buildBanner()
{
    m_banner = new Banner(this);
    m_banner->setObjectName(QStringLiteral("paneBanner"));
    auto *const row = new QHBoxLayout(m_banner);
    row->setContentsMargins(scaled(14), scaled(6), scaled(8), scaled(6));
    m_bannerText = makeBody({}, m_banner);
    m_bannerText->setToken(Token::Danger);
    m_bannerText->setObjectName(QStringLiteral("bannerText"));
    row->addWidget(m_bannerText, 1);
    m_remedies = new QWidget(m_banner);
    auto *const buttons = new QHBoxLayout(m_remedies);
    buttons->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_remedies, 0, Qt::AlignTop);
    auto *const close = new SymbolButton(QStringLiteral("x"), QStringLiteral("Meldung schließen"),
                                         QStringLiteral("closeBanner"), m_banner, Token::Danger);
    connect(close, &QAbstractButton::clicked, this, [this] { m_pane.dismissError(); });
    row->addWidget(close, 0, Qt::AlignTop);
    m_banner->hide();
}

/// One button for each remedy of the failure.
void PaneView::addRemedies()
{
    QLayout &buttons = *m_remedies->layout();
    while (QLayoutItem *const old = buttons.takeAt(0)) {
        old->widget()->hide(); // may be the button whose click is being handled
        old->widget()->deleteLater();
        delete old;
    }
    static const std::map<Remedy, std::pair<QString, QString>> titles{
        {Remedy::Retry, {QStringLiteral("Erneut versuchen"), QStringLiteral("bannerRetry")}},
        {Remedy::FreeSpace, {QStringLiteral("Platz schaffen"), QStringLiteral("bannerFreeSpace")}},
        {Remedy::ShowRights, {QStringLiteral("Rechte zeigen"), QStringLiteral("bannerShowRights")}}};
    for (const Remedy remedy : m_pane.lastFailure().remedies) {
        const auto &[title, name] = titles.at(remedy);
        QPushButton *const button = makeButton(title, ButtonKind::Link, name, m_remedies);
        connect(button, &QAbstractButton::clicked, this, [this, remedy] { apply(remedy); });
        buttons.addWidget(button);
    }
}

void PaneView::apply(Remedy remedy)
{
    const PaneFailure failure = m_pane.lastFailure();
    focusList();
    switch (remedy) {
    case Remedy::Retry:
        m_pane.dismissError();
        failure.retry();
        break;
    case Remedy::FreeSpace:
        m_pane.showPlace(Place::storage(m_pane.current.get()));
        break;
    case Remedy::ShowRights:
        Q_EMIT rightsWanted(failure.entry);
        break;
    }
}

void PaneView::buildViews()
{
    m_details = new DetailsView(m_pane, *m_rows, m_pictures, m_services.defaults, m_stack);
    m_icons = new IconsView(m_pane, *m_rows, m_pictures, m_services.thumbnails, m_stack);
    m_message = new EmptyState(QStringLiteral("folder-open"), {}, {}, m_stack);
    m_message->setObjectName(QStringLiteral("paneMessage"));
    m_goUp = makeButton(QStringLiteral("Übergeordneten Ordner öffnen"), ButtonKind::Usual,
                        QStringLiteral("goUpFromGone"), m_message);
    m_goUp->hide();
    m_message->addButton(m_goUp);
    connect(m_goUp, &QAbstractButton::clicked, this, [this] {
        focusList();
        m_pane.goUp();
    });
    m_message->setFocusPolicy(Qt::StrongFocus);
    m_message->setContextMenuPolicy(Qt::CustomContextMenu);
    m_message->installEventFilter(this);
    connect(m_message, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &at) { Q_EMIT menuRequested(m_message->mapToGlobal(at)); });
    for (QWidget *const one :
         {static_cast<QWidget *>(m_details), static_cast<QWidget *>(m_icons), static_cast<QWidget *>(m_message)})
        m_stack->addWidget(one);
    // Both views share one selection, so that switching keeps it.
    auto *const selection = new QItemSelectionModel(m_rows, this);
    m_details->setSelectionModel(selection);
    m_icons->setSelectionModel(selection);
    m_link = new SelectionLink(m_pane, *m_rows, *selection);
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &PaneView::tellPosition);
    link(m_details);
    link(m_icons);
    const auto openBehind = [this](const QModelIndex &index) {
        if (index.isValid() && m_rows->item(index.row()).isFolder)
            Q_EMIT backgroundTabRequested(m_rows->item(index.row()).location());
    };
    connect(m_details, &DetailsView::middleClicked, this, openBehind);
    connect(m_icons, &IconsView::middleClicked, this, openBehind);
    connect(&m_details->columns(), &DetailsColumns::chosen, this, &PaneView::columnsChosen);
    QHeaderView *const header = m_details->header();
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this, header](const QPoint &at) { arrangementMenu()->popup(header->mapToGlobal(at)); });
}

QMenu *PaneView::arrangementMenu()
{
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("arrangementMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (&view() == m_details) {
        m_details->columns().addTo(*menu);
        menu->addSeparator();
    }
    addArrangement(*menu, m_pane);
    return menu;
}

void PaneView::addArrangementTo(QMenu &menu)
{
    addArrangement(menu, m_pane);
    if (&view() != m_details)
        return;
    QMenu *const columns = menu.addMenu(Symbols::icon(QStringLiteral("columns-2")), QStringLiteral("Spalten"));
    columns->setObjectName(QStringLiteral("columnsMenu"));
    m_details->columns().addTo(*columns);
}

void PaneView::rereadColumns()
{
    m_details->rereadColumns();
}

/// By key, so with the first entry current.
void PaneView::showArrangement()
{
    QMenu *const menu = arrangementMenu();
    menu->popup(view().mapToGlobal(QPoint(0, 0)));
    menu->setActiveAction(menu->actions().constFirst());
}

void PaneView::link(QAbstractItemView *view)
{
    view->installEventFilter(this);
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, &PaneView::tellPosition);
    takeDrops(view);
    connect(view, &QAbstractItemView::doubleClicked, this, &PaneView::open);
    connect(view, &QWidget::customContextMenuRequested, this, [this, view](const QPoint &at) {
        const QModelIndex index = view->indexAt(at);
        if (!index.isValid())
            view->clearSelection();
        settle();
        Q_EMIT menuRequested(view->viewport()->mapToGlobal(at));
    });
    auto *const editing = static_cast<NameDelegate *>(view->itemDelegate());
    connect(editing, &NameDelegate::renameEnded, this, &PaneView::endRename);
    // Deferred: renaming closes the editor, whose event this is.
    const auto submit = [this](const QString &name, BrowserModel::RenameNext then) {
        m_pane.setRenameText(name);
        m_pane.commitRename(then);
    };
    connect(editing, &NameDelegate::nameSubmitted, this, submit, Qt::QueuedConnection);
}

void PaneView::takeDrops(QAbstractItemView *view)
{
    auto *const drop = new FileDrop(view->viewport(), [this, view](QPoint at) -> std::optional<Location> {
        const QModelIndex index = view->indexAt(at);
        if (index.isValid() && m_rows->item(index.row()).isFolder)
            return m_rows->item(index.row()).location();
        return m_pane.current.get();
    });
    connect(drop, &FileDrop::dropped, this, &PaneView::dropped);
    connect(drop, &FileDrop::over, this, &PaneView::showDrop);
    connect(drop, &FileDrop::sprung, this, [this](const Location &folder) {
        showDrop(std::nullopt);
        if (folder != m_pane.current.get())
            m_pane.navigate(folder);
    });
}

void PaneView::showDrop(const std::optional<Location> &folder)
{
    const int row = folder && *folder != m_pane.current.get() ? m_rows->rowOf(*folder) : -1;
    static_cast<NameDelegate *>(view().itemDelegate())->setDropRow(row);
    view().viewport()->update();
}

QAbstractItemView &PaneView::view() const
{
    if (m_pane.viewMode.get() == ViewMode::Icons)
        return *m_icons;
    return *m_details;
}

bool PaneView::isTyping() const
{
    return m_pane.viewMode.get() == ViewMode::Icons ? m_icons->isTyping() : m_details->isTyping();
}

void PaneView::setActive(bool active)
{
    m_details->setActive(active);
    m_icons->setActive(active);
}

void PaneView::showCut(const std::set<Location> &entries)
{
    for (QAbstractItemView *const one : std::initializer_list<QAbstractItemView *>{m_details, m_icons}) {
        static_cast<NameDelegate *>(one->itemDelegate())->setCut(entries);
        one->viewport()->update();
    }
}

void PaneView::showMode(ViewMode)
{
    const bool focus = m_stack->currentWidget() && m_stack->currentWidget()->hasFocus();
    showMessage();
    if (focus && m_stack->currentWidget() != m_message)
        view().setFocus();
}

/// Failed operations stand above the list; that the folder cannot be read stands in its place.
void PaneView::showMessage()
{
    // What was typed is refused at its field.
    const bool atField = m_pane.renameRefusal.get() || m_pane.refusedPath.get();
    const bool failed = m_pane.errorMessage.get().has_value() && !m_pane.readFailed() && !atField;
    m_bannerText->setText(failed ? m_pane.lastFailure().text : QString());
    m_banner->setVisible(failed);
    const bool empty = m_pane.displayedItems.get().empty();
    const bool unread = m_pane.readFailed() && m_pane.errorMessage.get();
    const QString text = unread ? *m_pane.errorMessage.get() : m_pane.emptyText.get();
    const bool focus = m_stack->currentWidget() && m_stack->currentWidget()->hasFocus();
    if (!empty || text.isEmpty()) {
        m_stack->setCurrentWidget(&view());
    } else {
        m_message->setSymbol(unread ? QStringLiteral("circle-alert") : QStringLiteral("folder-open"),
                             unread ? Token::Danger : Token::Tertiary);
        m_message->setTexts(text.section(QStringLiteral("\n\n"), 0, 0), text.section(QStringLiteral("\n\n"), 1));
        m_goUp->setVisible(m_pane.folderGone.get());
        m_stack->setCurrentWidget(m_message);
    }
    if (focus)
        m_stack->currentWidget()->setFocus();
}

void PaneView::tellPosition()
{
    if (m_moving)
        return;
    m_moving = true;
    const QModelIndex current = view().currentIndex();
    ViewPosition now = m_pane.position.get();
    if (!current.isValid() || current.row() >= m_rows->rowCount())
        now.current.clear();
    else if (const FileItem &item = m_rows->item(current.row()); !item.isAt(now.current.native()))
        now.current = item.location();
    now.scroll = view().verticalScrollBar()->value();
    m_pane.setPosition(now);
    m_moving = false;
}

void PaneView::followPosition(const ViewPosition &wanted)
{
    if (m_moving || (wanted.current.empty() && !wanted.scroll))
        return;
    m_moving = true;
    QAbstractItemView &list = view();
    list.doItemsLayout(); // otherwise the scroll bar still has the range of the old rows
    const int row = wanted.current.empty() ? -1 : m_rows->rowOf(wanted.current);
    if (row >= 0)
        list.selectionModel()->setCurrentIndex(m_rows->index(row, 0), QItemSelectionModel::NoUpdate);
    if (wanted.scroll)
        list.verticalScrollBar()->setValue(*wanted.scroll);
    else if (row >= 0)
        list.scrollTo(m_rows->index(row, 0));
    m_moving = false;
}

bool PaneView::focusFilters()
{
    m_searchBar->setFocus();
    return m_searchBar->isVisible();
}

/// The list has the focus after the bar is gone.
void PaneView::leaveFilters()
{
    if (!endOne())
        m_pane.setSearchTerms({});
    if (!m_pane.searching.get())
        focusList();
}

void PaneView::focusFirst()
{
    focusList();
    settle();
    if (!m_pane.selection.get().empty() || m_rows->rowCount() == 0)
        return;
    const auto select = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
    view().selectionModel()->setCurrentIndex(m_rows->index(0, 0), select);
    settle();
}

void PaneView::open(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    const FileItem item = m_rows->item(index.row());
    if (item.isFolder)
        m_pane.navigate(item.location());
    else
        Q_EMIT openRequested({item});
}

void PaneView::openSelection()
{
    settle();
    const std::vector<FileItem> selected = m_pane.selectedItems();
    if (selected.empty()) {
        open(view().currentIndex());
        return;
    }
    std::vector<FileItem> files;
    for (const FileItem &item : selected) {
        if (!item.isFolder)
            files.push_back(item);
        else if (selected.size() > 1)
            Q_EMIT tabRequested(item.location());
    }
    if (!files.empty())
        Q_EMIT openRequested(files);
    if (selected.size() == 1 && selected.front().isFolder)
        m_pane.navigate(selected.front().location());
}

void PaneView::rename(const std::optional<FileItem> &item)
{
    names().closeName();
    if (!item)
        return;
    const int row = m_rows->rowOf(*item);
    if (row < 0)
        return;
    const QModelIndex index = m_rows->index(row, 0);
    view().scrollTo(index);
    view().selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view().edit(index);
}

/// The view may have closed the editor, because another row became current; then it is opened again.
void PaneView::showRefusal(const std::optional<QString> &reason)
{
    showMessage();
    if (!reason)
        return;
    if (!names().isEditing())
        rename(m_pane.renameTarget.get());
    names().refuseName(*reason);
}

NameDelegate &PaneView::names() const
{
    return *static_cast<NameDelegate *>(view().itemDelegate());
}

/// Called when the editor was closed. A commit has already been passed on; otherwise cancels the rename.
void PaneView::endRename()
{
    QTimer::singleShot(0, this, [this] {
        if (m_pane.renameTarget.get() && !m_pane.isRenaming() && !names().isEditing())
            m_pane.cancelRename();
    });
}

bool PaneView::keyPressed(const QKeyEvent &key, bool inView)
{
    if (key.modifiers() != Qt::NoModifier && key.modifiers() != Qt::KeypadModifier)
        return false;
    if (inView && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)) {
        openSelection();
        return true;
    }
    if (key.key() != Qt::Key_Escape)
        return false;
    if (!endOne())
        Q_EMIT escaped();
    return true;
}

/// Ends the innermost thing that Esc can end in this pane; false if there is none.
bool PaneView::endOne()
{
    if (m_details->endTyping())
        return true;
    if (m_pane.errorMessage.get() && !m_pane.readFailed()) {
        m_pane.dismissError();
        return true;
    }
    if (m_pane.clearSearchFilters())
        return true;
    const Place::Kind kind = m_pane.place.get().kind;
    if (kind != Place::Kind::Search && kind != Place::Kind::Tag)
        return false;
    m_pane.endResults();
    return true;
}

bool PaneView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        Q_EMIT focused();
    // Ignore keys that propagate from an editor inside the list.
    if (event->type() == QEvent::KeyPress && static_cast<QWidget *>(watched)->hasFocus() &&
        keyPressed(*static_cast<QKeyEvent *>(event), watched != m_message))
        return true;
    return QWidget::eventFilter(watched, event);
}

} // namespace brellin
