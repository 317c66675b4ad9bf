#include "ContentView/BrowserModel.h"
#include "ContentView/SearchFiltering.h"

namespace brellin {

bool BrowserModel::showsListing() const
{
    const Place::Kind kind = place.get().kind;
    return kind != Place::Kind::Search && kind != Place::Kind::Tag;
}

void BrowserModel::setSearchText(const QString &text)
{
    if (text == searchText.get())
        return;
    publish(searchText, text);
    m_searchSoon.start();
}

void BrowserModel::runSearch()
{
    m_searchSoon.stop();
    m_search.drop();
    publish(searchRunning, false);
    publish(searchCapped, false);
    publish(notSearched, SearchGaps());
    const QString query = searchText.get().trimmed();
    if (query.isEmpty()) {
        const SearchTerms terms = searchTerms.get();
        if (searching.get())
            endResults();
        publish(searchTerms, terms); // for the text typed instead
        return;
    }
    // Refining a search is no step of the history.
    if (!place.get().isSearchBelow(current.get())) {
        record();
        m_arrival.reset();
    }
    startSearch(query);
}

void BrowserModel::setSearchTerms(const SearchTerms &terms)
{
    if (terms == searchTerms.get())
        return;
    publish(searchTerms, terms);
    const Place now = place.get();
    if (now.kind != Place::Kind::Search)
        return;
    const bool known = covers(m_ranWith, terms.filters) && !searchCapped.get();
    if (terms.contents != now.terms.contents || !known) {
        runSearch();
        return;
    }
    setPlace(Place::search(now.location, now.name, terms));
    showMatches();
}

bool BrowserModel::clearSearchFilters()
{
    if (!searchTerms.get().filters.narrow())
        return false;
    setSearchTerms({{}, searchTerms.get().contents});
    return true;
}

void BrowserModel::openSearch(const Place &wanted)
{
    leaveSearch();
    publish(searchText, wanted.name);
    publish(searchTerms, wanted.terms);
    startSearch(wanted.name);
}

void BrowserModel::startSearch(const QString &query)
{
    const Place wanted = Place::search(current.get(), query, searchTerms.get());
    const bool again = place.get() == wanted;
    setPlace(wanted);
    m_ranWith = wanted.terms.filters;
    const HiddenEntries hidden = showHidden.get() ? HiddenEntries::Shown : HiddenEntries::LeftOut;
    const auto matches = std::make_shared<SearchMatches>(m_ranWith);
    search([asked = FolderQuery{current.get(), query, hidden, wanted.terms}, matches,
            work = m_services.search](const JobControl &control) { return work(*matches, asked, &control); });
    // When repeating a search, the old matches stay visible until it ends.
    if (!again)
        m_search.showMatches(matches);
}

void BrowserModel::showTag(const QString &tag)
{
    if (place.get() != Place::tag(tag))
        record();
    openTag(tag);
}

void BrowserModel::openTag(const QString &tag)
{
    m_check.drop();
    m_arrival.reset();
    leaveSearch();
    setSelection({});
    setPlace(Place::tag(tag));
    setItems({});
    findTag();
}

void BrowserModel::findTag()
{
    const bool again = !items.get().empty();
    m_ranWith = {};
    const auto matches = std::make_shared<SearchMatches>();
    search([tag = *tagFilter.get(), matches, home = m_services.folders.home,
            &port = m_services.tagSearch](const JobControl &control) {
        const auto found = [&matches](const Location &entry) { (void)matches->take(entry); };
        const Result<TaggedEntries> entries = port.find(tag, home, control, found);
        FolderSearchResult result;
        if (entries) {
            result.items = readItems(entries->entries, &control);
            result.gaps.files = matches->result().gaps.files;
            result.gaps.folders = entries->unreadable;
        } else {
            result.error = entries.error();
        }
        return result;
    });
    if (!again)
        m_search.showMatches(matches);
}

void BrowserModel::search(SearchRun::Work work)
{
    publish(searchRunning, true);
    m_search.start(current.get(), std::move(work));
    updateTexts();
}

void BrowserModel::found(const FolderSearchResult &result)
{
    m_matches = result.items;
    publish(passages, result.passages);
    showMatches();
}

void BrowserModel::showMatches()
{
    setItems(narrowed(m_matches, place.get().terms.filters, std::chrono::system_clock::now()));
}

void BrowserModel::ended(const FolderSearchResult &result)
{
    publish(searchRunning, false);
    publish(searchCapped, result.capped);
    publish(notSearched, result.gaps);
    found(result);
    takeArrival();
    if (result.error && !result.error->isCancelled())
        showError(QStringLiteral("Die Suche brach ab: ") + result.error->message);
    // The limit may have left out what meets the filters chosen meanwhile.
    if (result.capped && searching.get() && place.get().terms.filters != m_ranWith)
        runSearch();
}

/// Stops a search or tag view. The caller must replace `place` and `items`.
void BrowserModel::leaveSearch()
{
    m_searchSoon.stop();
    m_search.drop();
    publish(searchText, QString());
    publish(searchTerms, SearchTerms());
    publish(searchRunning, false);
    publish(searchCapped, false);
    publish(notSearched, SearchGaps());
    publish(passages, Passages());
    m_matches = {};
}

/// Restores selection and scroll position of the folder if the user came from there.
void BrowserModel::endResults()
{
    if (showsListing())
        return;
    const std::optional<PlaceVisit> before = m_history.next(NavigationHistory::Way::Back);
    if (before && before->place == placeOf(current.get(), m_services.folders)) {
        goBack();
        return;
    }
    record();
    leaveResults();
}

/// Returns from a search or tag view to the folder.
void BrowserModel::leaveResults()
{
    leaveSearch();
    setPlace(placeOf(current.get(), m_services.folders));
    showListing();
}

} // namespace brellin
