#include "ContentView/Panes.h"

#include "System/PlainSetting.h"

namespace brellin {

namespace {

const QString dualPaneKey = QStringLiteral("dualPane");

} // namespace

Panes::Panes(const BrowserServices &services, const Location &start) : Panes(services, StoredTab{{}, start}) {}

Panes::Panes(const BrowserServices &services, const StoredTab &stored)
    : m_services(services)
    , m_first(std::make_unique<BrowserModel>(services, stored.path))
{
    publish(active, m_first.get());
    if (stored.second)
        openSecond(*stored.second);
    else if (!stored.single && plainSetting(m_services.defaults, dualPaneKey, false))
        openSecond(stored.path);
    if (stored.secondActive && m_second)
        publish(active, m_second.get());
}

Result<void> Panes::setDualPane(bool on)
{
    if (on == dualPane.get())
        return {};
    if (on)
        openSecond(m_first->current.get());
    else
        closeSecond();
    return m_services.defaults.setValue(dualPaneKey, on);
}

void Panes::swap()
{
    if (m_second)
        std::swap(m_first, m_second);
}

void Panes::setActive(BrowserModel *pane)
{
    if (pane != nullptr && (pane == m_first.get() || pane == m_second.get()))
        publish(active, pane);
}

void Panes::openSecond(const Location &start)
{
    m_second = std::make_unique<BrowserModel>(m_services, start);
    m_first->partner = m_second.get();
    m_second->partner = m_first.get();
    publish(dualPane, true);
}

/// Publishes first, so that views are destroyed before their model.
void Panes::closeSecond()
{
    publish(active, m_first.get());
    publish(dualPane, false);
    m_first->partner = nullptr;
    m_second.reset();
}

} // namespace brellin
