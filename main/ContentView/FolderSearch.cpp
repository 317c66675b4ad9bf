#include "ContentView/FolderSearch.h"

#include "Base/German.h"
#include "ContentView/NameQuery.h"
#include "ContentView/SearchFiltering.h"
#include "Disk/UnreadableFolders.h"

#include <algorithm>
#include <chrono>
#include <tuple>

namespace brellin {

namespace {

bool isGone(const Failure &failure)
{
    return failure.is(std::errc::no_such_file_or_directory) || failure.is(std::errc::not_a_directory);
}

} // namespace

QString gapsText(const SearchGaps &gaps)
{
    QStringList parts;
    const auto add = [&](const std::vector<Location> &entries, const QString &one, const QString &many,
                         const QString &what) {
        if (!entries.empty())
            parts << counted(std::ssize(entries), one, many) + what;
    };
    add(gaps.folders, QStringLiteral("Ordner"), QStringLiteral("Ordner"), QStringLiteral(" nicht lesbar"));
    add(gaps.files, QStringLiteral("Datei"), QStringLiteral("Dateien"), QStringLiteral(" nicht lesbar"));
    return parts.join(QStringLiteral(", "));
}

QStringList gapsLines(const SearchGaps &gaps)
{
    return shown(gaps.folders) + shown(gaps.files);
}

SearchMatches::SearchMatches(const SearchFilters &filters) : m_filters(filters), m_now(std::chrono::system_clock::now())
{
}

bool SearchMatches::take(const WalkEntry &entry)
{
    return take(entry.location(), entry.hidden);
}

bool SearchMatches::take(const Location &entry)
{
    return take(entry, false);
}

bool SearchMatches::take(const Location &entry, bool hidden)
{
    Result<FileItem> item = FileItem::at(entry);
    const bool wanted = item ? passes(*item, m_filters, m_now) : !isGone(item.error());
    if (!wanted)
        return true;
    const std::scoped_lock lock(m_mutex);
    if (!item) {
        m_gaps.files.push_back(entry);
        return true;
    }
    if (++m_count > mostSearchResults)
        return false;
    item->isHidden = item->isHidden || hidden;
    m_items.push_back(*std::move(item));
    return true;
}

std::size_t SearchMatches::size() const
{
    const std::scoped_lock lock(m_mutex);
    return m_items.size();
}

FolderSearchResult SearchMatches::result() const
{
    FolderSearchResult result;
    std::vector<FileItem> items;
    {
        const std::scoped_lock lock(m_mutex);
        items = m_items;
        result.gaps = m_gaps;
    }
    std::ranges::sort(items, {}, [](const FileItem &item) { return std::tie(*item.folder, item.nameBytes); });
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (*items[i].folder == *items[i - 1].folder)
            items[i].folder = items[i - 1].folder;
    }
    result.items = FileItems(std::move(items));
    result.capped = m_count.load() > mostSearchResults;
    for (std::vector<Location> *const list : {&result.gaps.folders, &result.gaps.files})
        std::ranges::sort(*list);
    return result;
}

FolderSearchResult searchFolder(const FolderQuery &query, const JobControl *control)
{
    SearchMatches matches(query.terms.filters);
    return searchInto(matches, query, control);
}

FolderSearchResult searchInto(SearchMatches &matches, const FolderQuery &query, const JobControl *control)
{
    const NameQuery wanted(query.text);
    const WalkOptions options{.hidden = query.hidden == HiddenEntries::Shown};
    const auto visit = [&](const WalkEntry &entry, int) {
        return !wanted.matches(entry.name) || matches.take(entry) ? WalkStep::Continue : WalkStep::Stop;
    };
    const Result<WalkOutcome> outcome = walkParallel(query.folder, options, visit, control);
    FolderSearchResult result = matches.result();
    if (outcome)
        addUnreadable(result.gaps.folders, outcome->unreadable);
    else
        result.error = outcome.error();
    return result;
}

} // namespace brellin
