#include "Agent/Rules/RuleWalk.h"

#include "Agent/Rules/HalfWritten.h"
#include "Agent/Rules/ScriptNames.h"
#include "Disk/CloudFiles.h"
#include "Disk/UnreadableFolders.h"
#include "Guard/Placeholders.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace brellin {

namespace {

constexpr std::size_t textBlock = 65536;

/// What one thread of the walk collects.
class Collector {
public:
    Collector(const RuleSource &source, const SystemLocations &locations, Instant now)
        : m_source(source)
        , m_locations(locations)
        , m_now(now)
    {
    }

    WalkStep show(const WalkEntry &entry)
    {
        if (entry.attributes.isFolder() && !mayEnter(entry))
            return WalkStep::SkipFolder;
        if (entry.attributes.isFile() || entry.package)
            addFile(entry);
        return WalkStep::Continue;
    }

    RuleWalk &found() { return m_found; }

private:
    /// The entry's folder relative to the source.
    std::string_view below(const WalkEntry &entry) const
    {
        return entry.folder.substr(m_source.folder.native().size());
    }
    std::string resolvedPath(const WalkEntry &entry) const
    {
        return m_source.resolved + std::string(below(entry)).append("/").append(entry.name);
    }
    bool mayEnter(const WalkEntry &entry) const;
    void addFile(const WalkEntry &entry);
    void addAwaited(const WalkEntry &entry);
    void addFitting(const WalkEntry &entry);
    std::string_view keptFolder(std::string_view folder);
    WalkedName keptName(const WalkEntry &entry, std::string_view name);

    const RuleSource &m_source;
    const SystemLocations &m_locations;
    const Instant m_now;
    RuleFile m_file;
    std::string_view m_folder; ///< the folder stored last
    RuleWalk m_found;
};

bool Collector::mayEnter(const WalkEntry &entry) const
{
    const std::string named = std::string(entry.folder).append("/").append(entry.name);
    if (!m_locations.mayEnter(named, entry.attributes.identity))
        return false;
    // Symlinks below the source are not followed, so resolved paths differ only in their prefix.
    return m_source.resolved == m_source.folder.native() ||
           m_locations.isAllowedText(std::string_view(resolvedPath(entry)));
}

std::string_view Collector::keptFolder(std::string_view folder)
{
    if (m_folder.empty() || folder != m_folder)
        m_folder = m_found.texts.keep(folder);
    return m_folder;
}

WalkedName Collector::keptName(const WalkEntry &entry, std::string_view name)
{
    return {keptFolder(entry.folder), m_found.texts.keep(name), entry.depth == 0};
}

void Collector::addFile(const WalkEntry &entry)
{
    ++m_found.checkedFiles;
    if (m_source.overlaps)
        m_found.checked.push_back(std::hash<std::string>()(resolvedPath(entry)));
    const FileAttributes &attributes = entry.attributes;
    // The size of a package's folder would be meaningless.
    m_file.set(entry.name, entry.unreadable || entry.package ? std::nullopt : std::optional(attributes.size),
               entry.unreadable ? std::nullopt : std::optional(attributes.modified));
    const std::string &extension = m_file.lowerExtension();
    if (isHalfWrittenExtension(extension))
        addAwaited(entry);
    else if (isReadScriptExtension(extension) && !entry.package)
        m_found.scripts.push_back(keptName(entry, entry.name));
    else if (!isScriptExtension(extension) && !entry.unreadable && !isPlaceHolder(entry))
        addFitting(entry);
}

void Collector::addAwaited(const WalkEntry &entry)
{
    m_found.awaited.push_back(keptName(entry, stemOf(entry.name)));
    if (const std::string reserved = reservedNameOf(entry.name); !reserved.empty())
        m_found.reserved.push_back(keptName(entry, reserved));
}

void Collector::addFitting(const WalkEntry &entry)
{
    const bool direct = entry.depth == 0;
    for (std::size_t i = 0; i < m_source.filters.size(); ++i) {
        const RuleFilter &filter = m_source.filters[i];
        if ((!direct && !filter.includeSubfolders) || !filter.conditions->hold(m_file, m_now))
            continue;
        m_found.files.push_back({.folder = keptFolder(entry.folder),
                                 .name = m_found.texts.keep(entry.name),
                                 .state = FileState::of(entry.attributes),
                                 .created = entry.attributes.created,
                                 .firstFit = static_cast<std::uint32_t>(i),
                                 .direct = direct,
                                 .package = entry.package});
        return;
    }
}

template <class T>
void append(std::vector<T> &to, const std::vector<T> &from)
{
    to.insert(to.end(), from.begin(), from.end());
}

RuleWalk joined(std::vector<Collector> &collectors)
{
    RuleWalk whole;
    for (Collector &collector : collectors) {
        RuleWalk &part = collector.found();
        append(whole.files, part.files);
        append(whole.scripts, part.scripts);
        append(whole.awaited, part.awaited);
        append(whole.reserved, part.reserved);
        append(whole.checked, part.checked);
        whole.checkedFiles += part.checkedFiles;
        whole.texts.take(std::move(part.texts));
    }
    std::ranges::sort(whole.files, [](const WalkedFile &a, const WalkedFile &b) {
        const int folders = a.folder.data() == b.folder.data() ? 0 : a.folder.compare(b.folder);
        return folders != 0 ? folders < 0 : a.name < b.name;
    });
    std::ranges::sort(whole.scripts);
    std::ranges::sort(whole.awaited);
    std::ranges::sort(whole.reserved);
    return whole;
}

} // namespace

std::string_view TextStore::keep(std::string_view text)
{
    if (text.size() > m_left) {
        m_left = std::max(textBlock, text.size());
        m_blocks.push_back(std::make_unique_for_overwrite<char[]>(m_left));
        m_next = m_blocks.back().get();
    }
    const std::string_view kept(m_next, text.size());
    text.copy(m_next, text.size());
    m_next += text.size();
    m_left -= text.size();
    return kept;
}

void TextStore::take(TextStore &&other)
{
    TextStore taken = std::move(other);
    for (std::unique_ptr<char[]> &block : taken.m_blocks)
        m_blocks.push_back(std::move(block));
    m_left = 0; // never fill a block taken from the other store
}

Location WalkedFile::location() const
{
    return std::string(folder).append("/").append(name);
}

bool RuleWalk::isAwaited(const WalkedFile &file) const
{
    const WalkedName name{file.folder, file.name, file.direct};
    return std::ranges::binary_search(awaited, name) ||
           (file.state.size == 0 && std::ranges::binary_search(reserved, name));
}

Result<RuleWalk> walkSource(const RuleSource &source, const SystemLocations &locations, Instant now,
                            const JobControl *control)
{
    const WalkOptions options{
        .attributes = Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created,
        .subfolders = source.includeSubfolders,
        .hidden = false,
        .insidePackages = false,
        .prune = {},
    };
    const int threads = walkThreads();
    std::vector<Collector> collectors;
    collectors.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i)
        collectors.emplace_back(source, locations, now);
    const Result<WalkOutcome> walked = walkParallel(
        source.folder, options,
        [&](const WalkEntry &entry, int thread) { return collectors[static_cast<std::size_t>(thread)].show(entry); },
        control, threads);
    if (!walked && walked.error().isCancelled())
        return failure(walked.error());
    RuleWalk found = joined(collectors);
    found.unreadable = unreadableIn(source.folder, walked);
    return found;
}

} // namespace brellin
