#include "App/Window/LargeViewing.h"

#include "ContentView/SelectionPreview.h"
#include "PhotoViewer/Screens/LargeView.h"

namespace brellin {

LargeViewing::LargeViewing(const WindowServices &services, QWidget *window)
    : QObject(window)
    , m_sizes(services.panes.sizes)
    , m_loader(services.defaults(), services.panes.volumes, services.decoder, services.clock)
    , m_view(new LargeView(m_loader, window, &services.thumbnails))
{
    connect(m_view, &LargeView::entryWanted, this, &LargeViewing::show);
    connect(m_view, &LargeView::openRequested, this, [this](const Location &) {
        if (m_item)
            Q_EMIT openRequested(*m_item);
    });
    connect(m_view, &LargeView::closed, this, [this] {
        m_following.reset();
        m_soon.stop();
        Q_EMIT closed();
    });
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &LargeViewing::update);
}

/// The view observes the loader, which is destroyed before the view's window.
LargeViewing::~LargeViewing()
{
    delete m_view;
}

bool LargeViewing::isOpen() const
{
    return m_view->isVisibleTo(m_view->parentWidget());
}

bool LargeViewing::showsSelection() const
{
    return isOpen() && (!m_among || m_view->viewing().entry.empty());
}

void LargeViewing::close()
{
    m_view->close();
}

void LargeViewing::open(BrowserModel &pane)
{
    const DisplayedItems &rows = pane.displayedItems.get();
    if (rows.empty())
        return;
    m_pane = &pane;
    const Selection &selected = pane.selection.get();
    m_among = selected.size() > 1 ? std::optional(selected) : std::nullopt;
    const Location current = pane.position.get().current;
    const FileItem *const only = pane.onlySelected();
    if (m_among)
        showSummary();
    else
        show(only ? only->location() : indexOf(current, this->rows()) ? current : rows[0].location());
    followPane();
}

void LargeViewing::followPane()
{
    m_following = std::make_unique<QObject>();
    QObject *const receiver = m_following.get();
    const auto soon = [this](const auto &) { m_soon.start(0); };
    m_pane->displayedItems.observe(receiver, soon);
    m_pane->selection.observe(receiver, soon);
    m_sizes.observe(receiver, soon);
    const auto leave = [this] { QTimer::singleShot(0, m_view, &LargeView::close); };
    m_pane->place.observe(receiver, [leave](const Place &) { leave(); });
    m_pane->errorMessage.observe(receiver, [leave](const std::optional<QString> &error) {
        if (error)
            leave();
    });
}

/// The rows to go through.
std::vector<std::uint32_t> LargeViewing::rows() const
{
    const DisplayedItems &all = m_pane->displayedItems.get();
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0; row < all.size(); ++row)
        if (!m_among || m_among->contains(all[row]))
            rows.push_back(row);
    return rows;
}

std::optional<std::size_t> LargeViewing::indexOf(const Location &entry, const std::vector<std::uint32_t> &rows) const
{
    const DisplayedItems &all = m_pane->displayedItems.get();
    const auto found = std::ranges::find_if(rows, [&](std::uint32_t row) { return all[row].isAt(entry.native()); });
    return found == rows.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - rows.begin()));
}

/// Several as one come before the first of them.
Viewing LargeViewing::viewing(std::size_t index, const std::vector<std::uint32_t> &among) const
{
    const DisplayedItems &all = m_pane->displayedItems.get();
    Viewing viewing = viewingAt(index, among.size(), [&](std::size_t at) { return all[among[at]].location(); });
    if (m_among && index == 0)
        viewing.before = Location();
    return viewing;
}

void LargeViewing::showSummary()
{
    const std::vector<std::uint32_t> among = rows();
    if (among.empty())
        return;
    const DisplayedItems &all = m_pane->displayedItems.get();
    m_item.reset();
    const auto size = [this](const FileItem &folder) { return m_pane->knownSize(folder); };
    m_view->showSummary(previewOfSelection(all, *m_among, size), all[among.front()].location());
}

/// The list follows: its current row, and its selection unless several are selected.
void LargeViewing::show(const Location &entry)
{
    if (entry.empty() && m_among) {
        showSummary();
        return;
    }
    const std::vector<std::uint32_t> among = rows();
    const std::optional<std::size_t> index = indexOf(entry, among);
    if (!index)
        return;
    m_item = m_pane->displayedItems.get()[among[*index]];
    m_view->show(viewing(*index, among));
    if (m_among)
        m_pane->setPosition({entry, {}});
    else
        m_pane->select({entry});
}

void LargeViewing::update()
{
    if (!m_pane || m_pane->displayedItems.get().empty()) {
        close();
        return;
    }
    if (m_among)
        m_among = m_pane->selection.get().size() > 1 ? std::optional(m_pane->selection.get()) : std::nullopt;
    const FileItem *const only = m_among ? nullptr : m_pane->onlySelected();
    if (only && !only->isAt(m_view->viewing().entry.native())) {
        show(only->location());
        return;
    }
    if (m_view->viewing().entry.empty()) {
        m_among ? showSummary() : close();
        return;
    }
    const std::vector<std::uint32_t> among = rows();
    const std::optional<std::size_t> index = indexOf(m_view->viewing().entry, among);
    if (!index) {
        showGone();
        return;
    }
    const DisplayedItems &all = m_pane->displayedItems.get();
    const Viewing now = viewing(*index, among);
    if (m_item == all[among[*index]]) {
        m_view->setViewing(now);
    } else {
        m_item = all[among[*index]];
        m_view->show(now); // it has changed
    }
}

/// The entry is no longer listed: loading it again tells why, and its former neighbours remain.
void LargeViewing::showGone()
{
    Viewing gone = m_view->viewing();
    const std::vector<std::uint32_t> among = rows();
    for (std::optional<Location> *const neighbour : {&gone.before, &gone.after})
        if (*neighbour && !indexOf(**neighbour, among))
            neighbour->reset();
    gone.number = 0;
    m_item.reset();
    m_view->show(gone);
}

} // namespace brellin
