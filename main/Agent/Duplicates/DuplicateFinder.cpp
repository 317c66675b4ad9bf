#include "Agent/Duplicates/DuplicateFinder.h"

#include "Agent/Duplicates/SkippedFolders.h"
#include "Disk/CloudFiles.h"
#include "Disk/ContentGroups.h"
#include "Disk/UnreadableFolders.h"
#include "Disk/UserDocument.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <iterator>
#include <mutex>
#include <set>

namespace brellin {

namespace {

/// Limit for all folders together.
constexpr std::size_t mostFiles = 20'000;

struct Document {
    const std::string *folder; ///< owned by the collection
    std::string name;
    FileState state;
    std::optional<Instant> created;

    std::string path() const { return *folder + '/' + name; }
    Location location() const { return path(); }
};

/// Order of preference: older, then shorter path, finally by path to make it deterministic.
bool isKeptRather(const Document &a, const Document &b)
{
    if (a.created != b.created)
        return a.created && (!b.created || *a.created < *b.created);
    const std::string pathA = a.path();
    const std::string pathB = b.path();
    const qsizetype lengthA = shown(std::string_view(pathA)).size();
    const qsizetype lengthB = shown(std::string_view(pathB)).size();
    return lengthA != lengthB ? lengthA < lengthB : pathA < pathB;
}

/// Collects the user documents of several folders, visiting each folder once.
class Collection {
public:
    /// Together: several threads; beyond the limit it is undefined which files are taken. InOrder: one thread, in the
    /// file system's order.
    enum class Pace { Together, InOrder };

    Collection(const SystemLocations &locations, const JobControl *control, Pace pace)
        : m_locations(locations)
        , m_control(control)
        , m_pace(pace)
        , m_parts(pace == Pace::Together ? static_cast<std::size_t>(walkThreads()) : 1)
    {
    }

    Result<void> collect(const std::vector<Location> &folders);
    bool capped() const { return m_capped; }
    /// In the order of the folders given, and by path within one.
    const std::vector<Document> &documents() const { return m_documents; }
    const std::vector<Location> &unreadable() const { return m_unreadable; }

private:
    /// The results of one thread.
    struct Part {
        std::deque<std::string> folders;
        std::vector<Document> documents;
        std::string extension; ///< the last one checked, and its result
        bool isUserDocument = false;
    };

    Result<void> add(const Location &folder);
    WalkStep visit(const WalkEntry &entry, Part &part);
    WalkStep visitFolder(const WalkEntry &entry);
    static bool isTaken(const WalkEntry &entry, Part &part);
    void gather();

    const SystemLocations &m_locations;
    const JobControl *m_control;
    const Pace m_pace;
    std::mutex m_mutex;
    std::set<FileIdentity> m_walked;
    std::atomic<std::size_t> m_taken = 0;
    std::atomic<bool> m_capped = false;
    std::vector<Part> m_parts;
    std::vector<Document> m_documents; ///< of the folders finished so far
    std::vector<Location> m_unreadable;
};

Result<void> Collection::collect(const std::vector<Location> &folders)
{
    for (const Location &folder : folders) {
        if (!m_capped)
            TRY(add(folder));
    }
    return {};
}

Result<void> Collection::add(const Location &folder)
{
    const Location top = standardised(folder);
    std::error_code error;
    const Result<FileAttributes> attributes = readAttributes(std::filesystem::canonical(top, error));
    if (error || !attributes || !m_locations.isAllowed(top) || !m_walked.insert(attributes->identity).second)
        return {};
    const WalkOptions options{.attributes =
                                  Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created,
                              .insidePackages = false,
                              .prune = [](std::string_view name) { return isDotName(name) || isSkippedFolder(name); }};
    const auto visitWith = [this](const WalkEntry &entry, int thread) {
        return visit(entry, m_parts[static_cast<std::size_t>(thread)]);
    };
    const Result<WalkOutcome> outcome =
        m_pace == Pace::Together
            ? walkParallel(top, options, visitWith, m_control)
            : walk(top, options, [&](const WalkEntry &entry) { return visitWith(entry, 0); }, m_control);
    if (!outcome && outcome.error().isCancelled())
        return failure(outcome.error());
    addUnreadable(m_unreadable, unreadableIn(top, outcome));
    gather();
    return {};
}

/// Merges the results of the threads in an order that does not depend on timing.
void Collection::gather()
{
    const auto before = static_cast<std::ptrdiff_t>(m_documents.size());
    for (Part &part : m_parts) {
        std::ranges::move(part.documents, std::back_inserter(m_documents));
        part.documents.clear();
    }
    std::ranges::sort(m_documents.begin() + before, m_documents.end(), [](const Document &a, const Document &b) {
        return a.folder != b.folder && *a.folder != *b.folder ? *a.folder < *b.folder : a.name < b.name;
    });
}

bool Collection::isTaken(const WalkEntry &entry, Part &part)
{
    const FileAttributes &file = entry.attributes;
    if (!file.isFile() || entry.unreadable || file.size <= 0 || isPlaceHolder(entry))
        return false;
    const std::string_view extension = extensionOf(entry.name);
    if (extension != part.extension) {
        part.extension = extension;
        part.isUserDocument = isUserDocumentExtension(extension);
    }
    return part.isUserDocument;
}

WalkStep Collection::visitFolder(const WalkEntry &entry)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_walked.insert(entry.attributes.identity).second)
            return WalkStep::SkipFolder;
    }
    const bool allowed = m_locations.mayEnter(entry.location().native(), entry.attributes.identity);
    return allowed ? WalkStep::Continue : WalkStep::SkipFolder;
}

WalkStep Collection::visit(const WalkEntry &entry, Part &part)
{
    if (entry.attributes.isFolder())
        return visitFolder(entry);
    if (!isTaken(entry, part))
        return WalkStep::Continue;
    if (m_taken++ >= mostFiles) {
        m_capped = true;
        return WalkStep::Stop;
    }
    if (part.folders.empty() || part.folders.back() != entry.folder)
        part.folders.emplace_back(entry.folder == "/" ? std::string_view() : entry.folder);
    part.documents.push_back(
        {&part.folders.back(), std::string(entry.name), FileState::of(entry.attributes), entry.attributes.created});
    return WalkStep::Continue;
}

/// Of several hard links to one file keeps only the preferred path.
std::vector<const Document *> withoutHardLinks(const std::vector<Document> &documents)
{
    std::vector<std::pair<FileIdentity, const Document *>> all;
    all.reserve(documents.size());
    for (const Document &document : documents)
        all.emplace_back(document.state.identity, &document);
    std::ranges::sort(all);
    std::vector<const Document *> single;
    single.reserve(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i == 0 || all[i].first != all[i - 1].first)
            single.push_back(all[i].second);
        else if (isKeptRather(*all[i].second, *single.back()))
            single.back() = all[i].second;
    }
    return single;
}

using Group = std::vector<const Document *>;

/// Groups of equal content, the preferred document first; ordered by that document.
std::vector<Group> groupsOf(const std::vector<Document> &documents, const JobControl *control)
{
    const std::vector<const Document *> single = withoutHardLinks(documents);
    std::vector<SeenFile> files;
    files.reserve(single.size());
    std::ranges::transform(single, std::back_inserter(files),
                           [](const Document *one) { return SeenFile{one->path(), one->state}; });
    std::vector<Group> groups;
    for (const ContentGroup &same : groupByContent(files, control)) {
        Group group;
        std::ranges::transform(same.files, std::back_inserter(group),
                               [&](std::size_t number) { return single[number]; });
        std::ranges::sort(group, [](const Document *a, const Document *b) { return isKeptRather(*a, *b); });
        groups.push_back(std::move(group));
    }
    // Pointers into one array, so comparing them is valid.
    std::ranges::sort(groups, {}, [](const Group &group) { return group.front(); });
    return groups;
}

Result<Duplicates> duplicatesIn(const Collection &collection, const JobControl *control)
{
    Duplicates found{
        {}, static_cast<std::int64_t>(collection.documents().size()), collection.capped(), collection.unreadable()};
    for (const Group &group : groupsOf(collection.documents(), control)) {
        const Document &kept = *group.front();
        const Location keptLocation = kept.location();
        for (std::size_t i = 1; i < group.size(); ++i)
            found.pairs.push_back({group[i]->location(), keptLocation, group[i]->state, kept.state});
    }
    if (control && control->cancelled())
        return failure(Failure::cancelled());
    return found;
}

} // namespace

Result<Duplicates> findDuplicates(const std::vector<Location> &folders, const SystemLocations &locations,
                                  JobControl *control)
{
    Collection together(locations, control, Collection::Pace::Together);
    TRY(together.collect(folders));
    if (!together.capped())
        return duplicatesIn(together, control);
    // Above the limit, the files taken must not change from one search to the next.
    Collection inOrder(locations, control, Collection::Pace::InOrder);
    TRY(inOrder.collect(folders));
    return duplicatesIn(inOrder, control);
}

} // namespace brellin
