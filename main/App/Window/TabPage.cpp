#include "App/Window/TabPage.h"

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
    m_first = addView(m_panes.first());
    showSecond(m_panes.dualPane.get());
    m_panes.dualPane.observe(this, [this](bool on) { showSecond(on); });
    m_panes.active.observe(this, [this](BrowserModel *) {
        showActive();
        Q_EMIT activeChanged();
    });
    showActive();
}

PaneView *TabPage::addView(BrowserModel &pane)
{
    auto *const view = new PaneView(
        pane, {m_services.panes.defaults, m_services.panes.sizes, m_services.panes.colors, &m_services.thumbnails},
        m_splitter);
    connect(view, &PaneView::focused, this, [this, &pane] { m_panes.setActive(&pane); });
    connect(view, &PaneView::openRequested, this, &TabPage::openRequested);
    connect(view, &PaneView::tabRequested, this, &TabPage::tabRequested);
    connect(view, &PaneView::backgroundTabRequested, this, &TabPage::backgroundTabRequested);
    connect(view, &PaneView::menuRequested, this, &TabPage::menuRequested);
    connect(view, &PaneView::rightsWanted, this, &TabPage::rightsWanted);
    connect(view, &PaneView::escaped, this, &TabPage::escaped);
    connect(view, &PaneView::dropped, this, [this, &pane](const DroppedFiles &files) { Q_EMIT dropped(files, &pane); });
    m_splitter->addWidget(view);
    return view;
}

void TabPage::showSecond(bool shown)
{
    if (shown && !m_second && m_panes.second()) {
        m_second = addView(*m_panes.second());
        m_second->setObjectName(QStringLiteral("secondPane"));
        m_splitter->setSizes({m_share, whole - m_share});
        m_second->show();
        Q_EMIT paneAdded(m_panes.second());
    } else if (!shown && m_second) {
        // The pane's model is destroyed after this callback, so the view must go first.
        delete std::exchange(m_second, nullptr);
    }
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

PaneView &TabPage::activeView() const
{
    return m_second && &m_second->pane() == m_panes.active.get() ? *m_second : *m_first;
}

void TabPage::showActive()
{
    m_first->setActive(&activeView() == m_first);
    if (m_second)
        m_second->setActive(&activeView() == m_second);
}

void TabPage::focusActive()
{
    activeView().focusList();
}

void TabPage::activatePaneOf(const QWidget *inside)
{
    for (PaneView *const view : {m_first, m_second})
        if (view && view->isAncestorOf(inside))
            m_panes.setActive(&view->pane());
}

void TabPage::switchPane()
{
    if (m_second)
        (&activeView() == m_first ? m_second : m_first)->focusList();
}

} // namespace brellin
