#include "ContentView/FolderSearch.h"

#include "Base/German.h"
#include "ContentView/ContentSearch.h"
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

/// Decides about each entry of a walk. Called from several threads.
class SearchVisit {
public:
    SearchVisit(SearchMatches &matches, const FolderQuery &query, const JobControl *control, Decoder *decoder)
        : m_matches(matches)
        , m_name(query.text)
        , m_control(control)
    {
        if (query.terms.contents)
            m_contents.emplace(query.text, decoder);
    }

    WalkStep operator()(const WalkEntry &entry) const
    {
        const bool named = m_name.matches(entry.name);
        if (m_contents && entry.attributes.isFile())
            return look(entry, named);
        return !named || m_matches.take(entry) ? WalkStep::Continue : WalkStep::Stop;
    }

private:
    WalkStep look(const WalkEntry &entry, bool named) const
    {
        const Location file = entry.location();
        std::optional<FileItem> item = m_matches.examine(file, entry.hidden);
        if (!item)
            return WalkStep::Continue;
        const QString passage = passageIn(file);
        const bool found = named || !passage.isEmpty();
        return !found || m_matches.take(*std::move(item), passage) ? WalkStep::Continue : WalkStep::Stop;
    }

    /// Empty if there is none.
    QString passageIn(const Location &file) const
    {
        const Result<ContentAnswer> answer = m_contents->find(file, m_control);
        if (answer && !answer->whole)
            m_matches.addGap(&SearchGaps::cut, file);
        if (answer)
            return answer->passage;
        // Decoders do not say that a file is gone.
        const Result<FileAttributes> there = readAttributes(file);
        if (!answer.error().isCancelled() && (there || !isGone(there.error())))
            m_matches.addGap(&SearchGaps::files, file);
        return {};
    }

    SearchMatches &m_matches;
    const NameQuery m_name;
    const JobControl *const m_control;
    std::optional<ContentSearch> m_contents;
};

} // namespace

QString gapsText(const SearchGaps &gaps)
{
    QStringList parts;
    const auto add = [&](const std::vector<Location> &entries, const QString &one, const QString &many,
                         const QString &what) {
        if (!entries.empty())
            parts << counted(std::ssize(entries), one, many) + what;
    };
    const QString file = QStringLiteral("Datei");
    const QString files = QStringLiteral("Dateien");
    add(gaps.folders, QStringLiteral("Ordner"), QStringLiteral("Ordner"), QStringLiteral(" nicht lesbar"));
    add(gaps.files, file, files, QStringLiteral(" nicht lesbar"));
    add(gaps.cut, file, files, QStringLiteral(" nur zum Teil durchsucht"));
    return parts.join(QStringLiteral(", "));
}

QStringList gapsLines(const SearchGaps &gaps)
{
    return shown(gaps.folders) + shown(gaps.files) + shown(gaps.cut);
}

SearchMatches::SearchMatches(const SearchFilters &filters) : m_filters(filters), m_now(std::chrono::system_clock::now())
{
}

bool SearchMatches::take(const WalkEntry &entry)
{
    std::optional<FileItem> item = examine(entry.location(), entry.hidden);
    return !item || take(*std::move(item), {});
}

bool SearchMatches::take(const Location &entry)
{
    std::optional<FileItem> item = examine(entry, false);
    return !item || take(*std::move(item), {});
}

bool SearchMatches::take(FileItem item, const QString &passage)
{
    if (m_count.fetch_add(1, std::memory_order_relaxed) >= mostSearchResults)
        return false;
    const std::scoped_lock lock(m_mutex);
    if (!passage.isEmpty())
        m_passages.emplace(item.path(), passage);
    m_items.push_back(std::move(item));
    return true;
}

std::optional<FileItem> SearchMatches::examine(const Location &entry, bool hidden)
{
    Result<FileItem> item = FileItem::at(entry);
    if (!item && !isGone(item.error()))
        addGap(&SearchGaps::files, entry);
    if (!item || !passes(*item, m_filters, m_now))
        return std::nullopt;
    item->isHidden = item->isHidden || hidden;
    item->details = readDetails(entry);
    return *std::move(item);
}

void SearchMatches::addGap(std::vector<Location> SearchGaps::*kind, const Location &entry)
{
    const std::scoped_lock lock(m_mutex);
    (m_gaps.*kind).push_back(entry);
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
        result.passages = m_passages;
        result.gaps = m_gaps;
    }
    std::ranges::sort(items, {}, [](const FileItem &item) { return std::tie(*item.folder, item.nameBytes); });
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (*items[i].folder == *items[i - 1].folder)
            items[i].folder = items[i - 1].folder;
    }
    result.items = FileItems(std::move(items));
    result.capped = m_count.load() > mostSearchResults;
    for (std::vector<Location> *const list : {&result.gaps.folders, &result.gaps.files, &result.gaps.cut})
        std::ranges::sort(*list);
    return result;
}

FolderSearchResult searchFolder(const FolderQuery &query, const JobControl *control, Decoder *decoder)
{
    SearchMatches matches(query.terms.filters);
    return searchInto(matches, query, control, decoder);
}

FolderSearchResult searchInto(SearchMatches &matches, const FolderQuery &query, const JobControl *control,
                              Decoder *decoder)
{
    const SearchVisit visit(matches, query, control, decoder);
    const WalkOptions options{.hidden = query.hidden == HiddenEntries::Shown};
    const Result<WalkOutcome> outcome =
        walkParallel(query.folder, options, [&](const WalkEntry &entry, int) { return visit(entry); }, control);
    FolderSearchResult result = matches.result();
    if (outcome)
        addUnreadable(result.gaps.folders, outcome->unreadable);
    else
        result.error = outcome.error();
    return result;
}

} // namespace brellin
