#include "Agent/DuplicateFinder.h"

#include "Agent/FolderUsage.h"
#include "Base/ParallelFor.h"
#include "Disk/ContentSample.h"
#include "Disk/Digest.h"
#include "Disk/UserDocument.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace brellin {

namespace {

/// The search ends when it has taken this many files, all folders together.
constexpr std::size_t mostFiles = 20'000;

struct Document {
    Location location;
    FileState state;
    std::optional<Instant> created;
    QByteArray digest; ///< first of a sample, then of the whole; empty while unknown or unreadable
    bool whole = false;
};

/// Whether the first is rather kept: older, then the shorter path; at last by name, so that the answer is always the same.
bool isKeptRather(const Document &a, const Document &b)
{
    if (a.created != b.created)
        return a.created && (!b.created || *a.created < *b.created);
    const qsizetype lengthA = shown(a.location).size();
    const qsizetype lengthB = shown(b.location).size();
    return lengthA != lengthB ? lengthA < lengthB : a.location.native() < b.location.native();
}

/// Walks the folders one after the other and takes the user documents, each folder once.
class Collection {
public:
    Collection(const SystemLocations &locations, const JobControl *control) : m_locations(locations), m_control(control)
    {
    }

    Result<void> add(const Location &folder);
    std::vector<Document> documents;
    bool capped = false;

private:
    WalkStep visit(const WalkEntry &entry);
    bool isTaken(const WalkEntry &entry) const;

    const SystemLocations &m_locations;
    const JobControl *m_control;
    std::set<FileIdentity> m_walked;
};

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
    const Result<WalkOutcome> outcome =
        walk(top, options, [this](const WalkEntry &entry) { return visit(entry); }, m_control);
    // A folder that cannot be read has nothing to offer.
    if (!outcome && outcome.error().isCancelled())
        return failure(outcome.error());
    return {};
}

bool Collection::isTaken(const WalkEntry &entry) const
{
    const FileAttributes &file = entry.attributes;
    return file.isFile() && !entry.unreadable && file.size > 0 && !isPlaceHolder(file) &&
           isUserDocumentExtension(extensionOf(entry.name));
}

WalkStep Collection::visit(const WalkEntry &entry)
{
    if (entry.attributes.isFolder()) {
        if (!m_walked.insert(entry.attributes.identity).second)
            return WalkStep::SkipFolder;
        return m_locations.isAllowedText(entry.location()) ? WalkStep::Continue : WalkStep::SkipFolder;
    }
    if (!isTaken(entry))
        return WalkStep::Continue;
    if (documents.size() == mostFiles) {
        capped = true;
        return WalkStep::Stop;
    }
    documents.push_back({entry.location(), FileState::of(entry.attributes), entry.attributes.created, {}});
    return WalkStep::Continue;
}

using Group = std::vector<Document *>;

/// Of several paths to one file only the one that would rather be kept takes part.
void dropHardLinks(Group &group)
{
    std::ranges::sort(group, [](const Document *a, const Document *b) {
        return a->state.identity != b->state.identity ? a->state.identity < b->state.identity : isKeptRather(*a, *b);
    });
    const auto rest = std::ranges::unique(group, {}, [](const Document *one) { return one->state.identity; });
    group.erase(rest.begin(), rest.end());
}

/// Those that share their size with another file.
std::vector<Group> groupsOfOneSize(std::vector<Document> &documents)
{
    std::unordered_map<std::int64_t, Group> bySize;
    for (Document &document : documents)
        bySize[document.state.size].push_back(&document);
    std::vector<Group> groups;
    for (auto &[size, group] : bySize) {
        if (group.size() > 1)
            dropHardLinks(group);
        if (group.size() > 1)
            groups.push_back(std::move(group));
    }
    return groups;
}

/// Splits each group by digest; what has none, or stands alone, drops out.
std::vector<Group> splitByDigest(const std::vector<Group> &groups)
{
    std::vector<Group> split;
    for (const Group &group : groups) {
        std::map<QByteArray, Group> byDigest;
        for (Document *document : group) {
            if (!document->digest.isEmpty())
                byDigest[document->digest].push_back(document);
        }
        for (auto &[digest, same] : byDigest) {
            if (same.size() > 1)
                split.push_back(std::move(same));
        }
    }
    return split;
}

Group flattened(const std::vector<Group> &groups)
{
    Group all;
    for (const Group &group : groups)
        all.insert(all.end(), group.begin(), group.end());
    // Neighbours on the disk are read one after the other.
    std::ranges::sort(all, {}, [](const Document *one) { return one->state.identity; });
    return all;
}

std::vector<Group> groupsOfOneContent(std::vector<Document> &documents, JobControl *control)
{
    std::vector<Group> groups = groupsOfOneSize(documents);
    Group all = flattened(groups);
    parallelFor(
        all.size(),
        [&](std::size_t i) {
            if (const Result<ContentSample> sample = sampleContent(all[i]->location, all[i]->state.size)) {
                all[i]->digest = sample->digest;
                all[i]->whole = sample->whole;
            }
        },
        control);
    groups = splitByDigest(groups);
    all = flattened(groups);
    std::erase_if(all, [](const Document *one) { return one->whole; });
    parallelFor(
        all.size(), [&](std::size_t i) { all[i]->digest = sha256(all[i]->location, control).value_or(QByteArray()); },
        control);
    return splitByDigest(groups);
}

std::vector<DuplicatePair> pairsOf(std::vector<Group> groups)
{
    for (Group &group : groups)
        std::ranges::sort(group, [](const Document *a, const Document *b) { return isKeptRather(*a, *b); });
    // In the order in which the walk met the kept files: they lie in one array.
    std::ranges::sort(groups, {}, [](const Group &group) { return group.front(); });
    std::vector<DuplicatePair> pairs;
    for (const Group &group : groups) {
        const Document &kept = *group.front();
        for (std::size_t i = 1; i < group.size(); ++i)
            pairs.push_back({group[i]->location, kept.location, group[i]->state, kept.state, kept.digest});
    }
    return pairs;
}

} // namespace

Result<Duplicates> findDuplicates(const std::vector<Location> &folders, const SystemLocations &locations,
                                  JobControl *control)
{
    Collection collection(locations, control);
    for (const Location &folder : folders) {
        if (!collection.capped)
            TRY(collection.add(folder));
    }
    std::vector<Group> groups = groupsOfOneContent(collection.documents, control);
    if (control && control->cancelled())
        return failure(Failure::cancelled());
    return Duplicates{pairsOf(std::move(groups)), static_cast<std::int64_t>(collection.documents.size()),
                      collection.capped};
}

QString duplicateReason(const Location &kept)
{
    return QStringLiteral("Doppelt – gleicher Inhalt wie „%1“ in %2")
        .arg(shownName(kept), shownName(kept.parent_path()));
}

} // namespace brellin
