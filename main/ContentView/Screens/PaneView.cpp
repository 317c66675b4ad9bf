#include "ContentView/Screens/PaneView.h"

#include "Look/Buttons.h"
#include "Look/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

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
    , m_stack(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("pane"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    buildBanner();
    column->addWidget(m_banner);
    column->addWidget(m_stack, 1);
    buildViews();
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);

    pane.viewMode.observe(this, [this](ViewMode mode) { showMode(mode); });
    pane.renameTarget.observe(this, [this](const std::optional<FileItem> &item) { rename(item); });
    pane.errorMessage.observe(this, [this](const auto &) { showMessage(); });
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
    row->addWidget(m_bannerText, 1);
    auto *const close = new SymbolButton(QStringLiteral("x"), QStringLiteral("Meldung schließen"),
                                         QStringLiteral("closeBanner"), m_banner, Token::Danger);
    connect(close, &QAbstractButton::clicked, this, [this] { m_pane.dismissError(); });
    row->addWidget(close, 0, Qt::AlignTop);
    m_banner->hide();
}

void PaneView::buildViews()
{
    m_details = new DetailsView(m_pane, *m_rows, m_pictures, m_services.defaults, m_stack);
    m_icons = new IconsView(m_pane, *m_rows, m_pictures, m_services.thumbnails, m_stack);
    m_message = new EmptyState(QStringLiteral("folder-open"), {}, {}, m_stack);
    m_message->setObjectName(QStringLiteral("paneMessage"));
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
    link(m_details);
    link(m_icons);
    connect(m_details, &DetailsView::middleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid() && m_rows->item(index.row()).isFolder)
            Q_EMIT tabRequested(m_rows->item(index.row()).location());
    });
    connect(m_icons, &IconsView::middleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid() && m_rows->item(index.row()).isFolder)
            Q_EMIT tabRequested(m_rows->item(index.row()).location());
    });
}

void PaneView::link(QAbstractItemView *view)
{
    view->installEventFilter(this);
    takeDrops(view);
    connect(view, &QAbstractItemView::doubleClicked, this, &PaneView::open);
    connect(view, &QWidget::customContextMenuRequested, this, [this, view](const QPoint &at) {
        const QModelIndex index = view->indexAt(at);
        if (!index.isValid())
            view->clearSelection();
        settle();
        Q_EMIT menuRequested(view->viewport()->mapToGlobal(at));
    });
    connect(static_cast<NameDelegate *>(view->itemDelegate()), &NameDelegate::renameEnded, this, &PaneView::endRename);
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

void PaneView::setActive(bool active)
{
    m_details->setActive(active);
    m_icons->setActive(active);
}

void PaneView::showMode(ViewMode)
{
    const bool focus = m_stack->currentWidget() && m_stack->currentWidget()->hasFocus();
    showMessage();
    if (focus && m_stack->currentWidget() != m_message)
        view().setFocus();
}

/// Shows a failure instead of the list if there is none, otherwise above it.
void PaneView::showMessage()
{
    const std::optional<QString> &error = m_pane.errorMessage.get();
    const bool empty = m_pane.displayedItems.get().empty();
    m_banner->setVisible(error && !empty);
    m_bannerText->setText(error.value_or(QString()));
    const QString text = error ? *error : m_pane.emptyText.get();
    const bool focus = m_stack->currentWidget() && m_stack->currentWidget()->hasFocus();
    if (!empty || text.isEmpty()) {
        m_stack->setCurrentWidget(&view());
    } else {
        m_message->setSymbol(error ? QStringLiteral("circle-alert") : QStringLiteral("folder-open"),
                             error ? Token::Danger : Token::Tertiary);
        m_message->setTexts(text.section(QStringLiteral("\n\n"), 0, 0), text.section(QStringLiteral("\n\n"), 1));
        m_stack->setCurrentWidget(m_message);
    }
    if (focus)
        m_stack->currentWidget()->setFocus();
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

/// Called when the editor was closed. A commit has already been passed on; otherwise cancels the rename.
void PaneView::endRename()
{
    QTimer::singleShot(0, this, [this] {
        if (m_pane.renameTarget.get())
            m_pane.cancelRename();
    });
}

bool PaneView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        Q_EMIT focused();
    // Ignore keys that propagate from an editor inside the list.
    if (event->type() == QEvent::KeyPress && watched != m_message && static_cast<QWidget *>(watched)->hasFocus()) {
        const auto *const key = static_cast<QKeyEvent *>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && key->modifiers() == Qt::NoModifier) {
            openSelection();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace brellin
