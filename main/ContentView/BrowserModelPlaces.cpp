#include "ContentView/BrowserModel.h"

namespace brellin {

namespace {

template <class T>
std::optional<T> when(bool holds, const T &value)
{
    return holds ? std::optional(value) : std::nullopt;
}

} // namespace

/// Keeps a search that already runs below the chosen folder.
void BrowserModel::choose(const SidebarItem &item)
{
    const Place wanted = placeOf(item, m_services.folders);
    if (!place.get().isSearchBelow(wanted.location))
        showPlace(wanted);
}

void BrowserModel::showPlace(const Place &wanted)
{
    using enum Place::Kind;
    switch (wanted.kind) {
    case Folder:
    case Trash:
        if (place.get().isSearchBelow(wanted.location)) {
            record();
            leaveResults();
        } else if (place.get() != wanted)
            navigate(wanted.location);
        return;
    case Search:
        publish(searchText, wanted.name);
        publish(searchTerms, wanted.terms);
        runSearch();
        return;
    case Tag:
        showTag(wanted.name);
        return;
    case Photos:
    case Network:
    case Agent:
    case Device:
    case Storage:
    case History:
        showPage(wanted);
        return;
    }
}

void BrowserModel::showPage(const Place &page)
{
    if (place.get() != page)
        record();
    openPage(page);
}

void BrowserModel::openPage(const Place &page)
{
    m_check.drop();
    m_arrival.reset();
    const Place before = place.get();
    if (!before.coversFolder())
        m_covered = before;
    leaveSearch();
    setPlace(page);
    if (before.kind == Place::Kind::Search || before.kind == Place::Kind::Tag)
        showListing();
}

void BrowserModel::leavePage()
{
    if (place.get().coversFolder())
        showPlace(m_covered);
}

void BrowserModel::uncoverFolder()
{
    if (place.get().coversFolder())
        setPlace(placeOf(current.get(), m_services.folders));
}

/// All changes of the place and of what is derived from it are published here.
void BrowserModel::setPlace(const Place &to)
{
    using enum Place::Kind;
    if (to.kind == Folder || to.kind == Trash)
        publish(current, to.location);
    publish(searching, to.kind == Search);
    publish(tagFilter, when(to.kind == Tag, to.name));
    publish(showPhotos, to.kind == Photos);
    publish(showNetwork, to.kind == Network);
    publish(showAgent, to.kind == Agent);
    publish(showDevice, when(to.kind == Device, to.name));
    publish(place, to);
}

} // namespace brellin
