#include "App/Window/MainWindow.h"
#include "App/Window/TabBar.h"

#include <QMenu>

namespace brellin {

namespace {

/// How many closed tabs can be opened again.
constexpr std::size_t mostClosedTabs = 20;

} // namespace

TabPage *MainWindow::tabAt(int index) const
{
    return static_cast<TabPage *>(m_tabPages->widget(index));
}

TabPage *MainWindow::tab() const
{
    return static_cast<TabPage *>(m_tabPages->currentWidget());
}

void MainWindow::addTab(const Location &folder)
{
    openTab(folder, TabOpening::InFront);
}

void MainWindow::openTab(const Location &folder, TabOpening opening)
{
    const int index = m_tabPages->count();
    insertTab(index, {QUuid::createUuid(), folder, std::nullopt});
    if (opening == TabOpening::InFront)
        showTab(index);
    showTitles();
    refreshState();
    Q_EMIT changed();
}

/// Behind the current tab; the caller shows it or updates the titles.
void MainWindow::insertTab(int index, const StoredTab &wanted)
{
    // The tab first: the bar makes its first one current at once, which is ignored while there is no page.
    m_tabs->insert(index, m_services.folders().title(wanted.path));
    m_tabPages->insertWidget(index, makeTab(wanted));
}

/// The stack focuses the first pane of a page that was never shown; the active one stays active.
void MainWindow::raisePage(int index)
{
    Panes &panes = tabAt(index)->panes();
    BrowserModel *const active = panes.active.get();
    m_tabPages->setCurrentIndex(index);
    panes.setActive(active);
}

void MainWindow::showTab(int index)
{
    m_tabs->setCurrent(index);
    raisePage(index);
    follow();
    tab()->focusActive();
}

void MainWindow::closeTab(int index)
{
    if (m_tabPages->count() <= 1) {
        close();
        return;
    }
    m_closedTabs.emplace_back(index, tabAt(index)->stored());
    if (m_closedTabs.size() > mostClosedTabs)
        m_closedTabs.erase(m_closedTabs.begin());
    QWidget *const page = m_tabPages->widget(index);
    m_following.reset();
    m_tabPages->removeWidget(page);
    m_tabs->remove(index);
    raisePage(m_tabs->current());
    follow();
    delete page;
    tab()->focusActive();
    Q_EMIT changed();
}

void MainWindow::closeCurrentTab()
{
    closeTab(m_tabs->current());
}

void MainWindow::closeOtherTabs(int index)
{
    for (int other = m_tabPages->count() - 1; other >= 0; --other)
        if (other != index)
            closeTab(other);
}

void MainWindow::closeOthers()
{
    closeOtherTabs(m_tabs->current());
}

/// Opens the same folders in a tab beside it.
void MainWindow::duplicateTab(int index)
{
    StoredTab copy = tabAt(index)->stored();
    copy.id = QUuid::createUuid();
    insertTab(index + 1, copy);
    showTab(index + 1);
    Q_EMIT changed();
}

void MainWindow::duplicateCurrentTab()
{
    duplicateTab(m_tabs->current());
}

void MainWindow::reopenTab()
{
    if (m_closedTabs.empty())
        return;
    const auto [index, tab] = m_closedTabs.back();
    m_closedTabs.pop_back();
    const int place = std::min(index, m_tabPages->count());
    insertTab(place, tab);
    showTab(place);
    Q_EMIT changed();
}

void MainWindow::nextTab()
{
    m_tabs->setCurrent((m_tabs->current() + 1) % m_tabs->count());
}

void MainWindow::previousTab()
{
    m_tabs->setCurrent((m_tabs->current() + m_tabs->count() - 1) % m_tabs->count());
}

void MainWindow::moveTabPage(int from, int to)
{
    QWidget *const page = m_tabPages->widget(from);
    m_tabPages->removeWidget(page);
    m_tabPages->insertWidget(to, page);
    m_tabPages->setCurrentIndex(m_tabs->current());
    Q_EMIT changed();
}

void MainWindow::showTabMenu(int index, const QPoint &global)
{
    if (hasSheet())
        return;
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("tabMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [this, menu](CommandId id, auto act) {
        menu->addAction(windowCommand(id).title, this, act)->setEnabled(windowCommand(id).enabled(state()));
    };
    // By identity, since tabs may close while the menu is open.
    const QPointer<QWidget> page = m_tabPages->widget(index);
    const auto on = [this, page](void (MainWindow::*act)(int)) {
        return [this, page, act] {
            if (page)
                (this->*act)(m_tabPages->indexOf(page));
        };
    };
    add(CommandId::NewTab, [this] { run(CommandId::NewTab); });
    add(CommandId::DuplicateTab, on(&MainWindow::duplicateTab));
    add(CommandId::ReopenTab, [this] { run(CommandId::ReopenTab); });
    menu->addSeparator();
    add(CommandId::CloseTab, on(&MainWindow::closeTab));
    add(CommandId::CloseOtherTabs, on(&MainWindow::closeOtherTabs));
    menu->popup(global);
}

} // namespace brellin
