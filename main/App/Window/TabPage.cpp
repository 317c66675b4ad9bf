#include "App/Window/TabPage.h"

#include "App/Window/PaneHeading.h"

#include <QApplication>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

namespace brellin {

namespace {

/// The width of both panes in `StoredTab::share`.
constexpr int whole = 1000;

} // namespace

TabPage::TabPage(const WindowServices &services, const StoredTab &from, QWidget *parent)
    : QWidget(parent)
    , m_services(services)
    , m_id(from.id)
    , m_panes(services.panes, from)
    , m_splitter(new QSplitter(Qt::Horizontal, this))
    , m_share(std::clamp(from.share, 1, whole - 1))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_splitter);
    m_splitter->setObjectName(QStringLiteral("panes"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(1);
    connect(m_splitter, &QSplitter::splitterMoved, this, &TabPage::keepShare);
    m_first = addSide(m_panes.first());
    showSecond(m_panes.dualPane.get());
    m_panes.dualPane.observe(this, [this](bool on) { showSecond(on); });
    m_panes.active.observe(this, [this](BrowserModel *) {
        showActive();
        Q_EMIT activeChanged();
    });
    showActive();
}

/// The pane may be deleted by the click on its heading's ×, so it is closed afterwards.
TabPage::Side TabPage::addSide(BrowserModel &pane)
{
    Side side;
    side.column = new QWidget(m_splitter);
    auto *const column = new QVBoxLayout(side.column);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    side.heading = new PaneHeading(pane, m_services.folders(), side.column);
    side.view = addView(pane, side.column);
    column->addWidget(side.heading);
    column->addWidget(side.view, 1);
    connect(side.heading, &PaneHeading::clicked, side.view, &PaneView::focusList);
    connect(side.heading, &PaneHeading::closeRequested, this, [this, &pane] { closePane(pane); }, Qt::QueuedConnection);
    m_splitter->addWidget(side.column);
    return side;
}

PaneView *TabPage::addView(BrowserModel &pane, QWidget *parent)
{
    auto *const view = new PaneView(
        pane, {m_services.panes.defaults, m_services.panes.sizes, m_services.panes.colors, &m_services.thumbnails},
        parent);
    connect(view, &PaneView::focused, this, [this, &pane] { m_panes.setActive(&pane); });
    connect(view, &PaneView::columnsChosen, this, [this] {
        for (const Side &one : {m_first, m_second})
            if (one.view)
                one.view->rereadColumns();
    });
    connect(view, &PaneView::openRequested, this, &TabPage::openRequested);
    connect(view, &PaneView::tabRequested, this, &TabPage::tabRequested);
    connect(view, &PaneView::backgroundTabRequested, this, &TabPage::backgroundTabRequested);
    connect(view, &PaneView::menuRequested, this, &TabPage::menuRequested);
    connect(view, &PaneView::rightsWanted, this, &TabPage::rightsWanted);
    connect(view, &PaneView::escaped, this, &TabPage::escaped);
    connect(view, &PaneView::dropped, this, [this, &pane](const DroppedFiles &files) { Q_EMIT dropped(files, &pane); });
    return view;
}

void TabPage::showSecond(bool shown)
{
    if (shown && !m_second.view && m_panes.second()) {
        m_second = addSide(*m_panes.second());
        m_second.view->showCut(m_cut);
        m_splitter->setSizes({m_share, whole - m_share});
        m_second.column->show();
        Q_EMIT paneAdded(m_panes.second());
    } else if (!shown && m_second.view) {
        // The pane's model is destroyed after this callback, so the view must go first.
        delete std::exchange(m_second, Side()).column;
    }
    showActive();
}

void TabPage::closePane(BrowserModel &pane)
{
    if (!m_second.view)
        return;
    if (&pane == &m_panes.first())
        swapPanes();
    if (const Result<void> kept = m_panes.setDualPane(false); !kept)
        Q_EMIT failed(kept.error().message);
    focusActive();
}

void TabPage::swapPanes()
{
    if (!m_second.view)
        return;
    const QList<int> widths = m_splitter->sizes();
    m_panes.swap();
    std::swap(m_first, m_second);
    const QPointer<QWidget> focus = QApplication::focusWidget();
    m_splitter->insertWidget(0, m_first.column);
    m_splitter->setSizes(widths);
    if (focus)
        focus->setFocus(); // moving a widget takes its focus
    showActive();
}

void TabPage::keepShare()
{
    const QList<int> widths = m_splitter->sizes();
    m_share = std::clamp(widths.first() * whole / std::max(1, widths.first() + widths.last()), 1, whole - 1);
    Q_EMIT shareChanged();
}

StoredTab TabPage::stored() const
{
    StoredTab tab{m_id, m_panes.first().current.get()};
    tab.single = !m_panes.second();
    if (m_panes.second()) {
        tab.second = m_panes.second()->current.get();
        tab.secondActive = m_panes.active.get() == m_panes.second();
    }
    tab.share = m_share;
    return tab;
}

TabPage::Side TabPage::activeSide() const
{
    return m_second.view && &m_second.view->pane() == m_panes.active.get() ? m_second : m_first;
}

PaneView &TabPage::activeView() const
{
    return *activeSide().view;
}

void TabPage::showActive()
{
    for (const Side &side : {m_first, m_second}) {
        if (!side.view)
            continue;
        const bool active = side.view == &activeView();
        side.view->setActive(active);
        side.heading->setActive(active);
        side.heading->setVisible(m_second.view != nullptr);
    }
    if (m_second.view) {
        m_first.view->setObjectName(QStringLiteral("pane"));
        m_second.view->setObjectName(QStringLiteral("secondPane"));
    }
}

void TabPage::showCut(const std::set<Location> &entries)
{
    m_cut = entries;
    for (const Side &side : {m_first, m_second})
        if (side.view)
            side.view->showCut(entries);
}

void TabPage::focusActive()
{
    activeView().focusList();
}

void TabPage::activatePaneOf(const QWidget *inside)
{
    for (const Side &side : {m_first, m_second})
        if (side.view && side.column->isAncestorOf(inside))
            m_panes.setActive(&side.view->pane());
}

void TabPage::switchPane()
{
    if (m_second.view)
        (&activeView() == m_first.view ? m_second : m_first).view->focusList();
}

} // namespace brellin
