#include "Disk/ContentGroups.h"

#include "Base/ParallelFor.h"
#include "Disk/OpenContent.h"

#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace brellin {

namespace {

/// Up to this many files of one size are opened and read together; larger groups are split by their ends first.
constexpr std::size_t openTogether = 8;

using Numbers = std::vector<std::size_t>;

/// One search; several threads fill its lists.
class Grouping {
public:
    Grouping(const std::vector<SeenFile> &files, const JobControl *control) : m_files(files), m_control(control) {}

    std::vector<ContentGroup> groups();

private:
    struct Opened {
        std::size_t number;
        OpenContent content;
    };

    std::vector<Numbers> ofOneSize() const;
    std::vector<Numbers> alikeAtTheEnds(const std::vector<Numbers> &many) const;
    void compare(const std::vector<Numbers> &few);
    void compareTogether(const Numbers &numbers);
    void compareOpened(const std::vector<Opened> &opened);
    void digestEach(const std::vector<Numbers> &many);
    void take(Numbers numbers);
    std::vector<Opened> opened(const Numbers &numbers) const;

    const std::vector<SeenFile> &m_files;
    const JobControl *m_control;
    std::mutex m_mutex;
    std::vector<ContentGroup> m_groups;
};

void Grouping::take(Numbers numbers)
{
    std::ranges::sort(numbers);
    const std::scoped_lock lock(m_mutex);
    m_groups.push_back({std::move(numbers)});
}

/// Files of equal size, ordered by inode for fast reading.
std::vector<Numbers> Grouping::ofOneSize() const
{
    std::unordered_map<std::int64_t, Numbers> bySize;
    for (std::size_t number = 0; number < m_files.size(); ++number)
        bySize[m_files[number].state.size].push_back(number);
    const auto place = [this](std::size_t number) { return m_files[number].state.identity; };
    std::vector<Numbers> groups;
    for (auto &[size, numbers] : bySize) {
        if (numbers.size() < 2)
            continue;
        std::ranges::sort(numbers, {}, place);
        groups.push_back(std::move(numbers));
    }
    std::ranges::sort(groups, {}, [&](const Numbers &numbers) { return place(numbers.front()); });
    return groups;
}

std::vector<Grouping::Opened> Grouping::opened(const Numbers &numbers) const
{
    std::vector<Opened> files;
    for (const std::size_t number : numbers) {
        if (Result<OpenContent> content = OpenContent::open(m_files[number].path, m_files[number].state))
            files.push_back({number, *std::move(content)});
    }
    return files;
}

void Grouping::compareOpened(const std::vector<Opened> &opened)
{
    if (opened.size() < 2)
        return;
    Numbers numbers;
    std::vector<const OpenContent *> contents;
    for (const Opened &one : opened) {
        numbers.push_back(one.number);
        contents.push_back(&one.content);
    }
    if (OpenContent::areEqual(contents, m_control))
        return take(std::move(numbers));
    if (opened.size() == 2)
        return;
    std::map<QByteArray, Numbers> byDigest;
    for (const Opened &one : opened) {
        const Result<QByteArray> digest = one.content.digest(m_control);
        if (digest)
            byDigest[*digest].push_back(one.number);
    }
    for (auto &[digest, same] : byDigest) {
        if (same.size() > 1)
            take(std::move(same));
    }
}

void Grouping::compareTogether(const Numbers &numbers)
{
    std::vector<Opened> files = opened(numbers);
    // Reading two small files costs less than hashing their ends first.
    if (files.size() == 2 && files.front().content.fitsOnePiece())
        return compareOpened(files);
    std::map<std::size_t, std::vector<Opened>> byEnds;
    for (Opened &one : files) {
        const Result<std::size_t> ends = one.content.endsHash();
        if (ends)
            byEnds[*ends].push_back(std::move(one));
    }
    for (const auto &[ends, alike] : byEnds)
        compareOpened(alike);
}

void Grouping::compare(const std::vector<Numbers> &few)
{
    parallelFor(few.size(), [&](std::size_t i) { compareTogether(few[i]); }, m_control);
}

/// Splits groups that are too large to be opened together by the hash of their files' ends.
std::vector<Numbers> Grouping::alikeAtTheEnds(const std::vector<Numbers> &many) const
{
    std::vector<std::pair<std::size_t, std::size_t>> all; // group, index
    for (std::size_t group = 0; group < many.size(); ++group) {
        for (const std::size_t number : many[group])
            all.emplace_back(group, number);
    }
    std::vector<std::optional<std::size_t>> hashes(all.size());
    const auto look = [&](std::size_t i) {
        const SeenFile &file = m_files[all[i].second];
        const Result<OpenContent> content = OpenContent::open(file.path, file.state);
        if (const Result<std::size_t> ends = content ? content->endsHash() : failure(content.error()))
            hashes[i] = *ends;
    };
    parallelFor(all.size(), look, m_control);
    std::map<std::pair<std::size_t, std::size_t>, Numbers> alike;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (hashes[i])
            alike[{all[i].first, *hashes[i]}].push_back(all[i].second);
    }
    std::vector<Numbers> groups;
    for (auto &[ends, numbers] : alike) {
        if (numbers.size() > 1)
            groups.push_back(std::move(numbers));
    }
    return groups;
}

void Grouping::digestEach(const std::vector<Numbers> &many)
{
    Numbers all;
    for (const Numbers &numbers : many)
        all.insert(all.end(), numbers.begin(), numbers.end());
    std::vector<QByteArray> digests(all.size());
    const auto digest = [&](std::size_t i) {
        const Result<OpenContent> content = OpenContent::open(m_files[all[i]].path, m_files[all[i]].state);
        if (content)
            digests[i] = content->digest(m_control).value_or(QByteArray());
    };
    parallelFor(all.size(), digest, m_control);
    std::map<std::pair<std::int64_t, QByteArray>, Numbers> same;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!digests[i].isEmpty())
            same[{m_files[all[i]].state.size, digests[i]}].push_back(all[i]);
    }
    for (auto &[content, numbers] : same) {
        if (numbers.size() > 1)
            take(std::move(numbers));
    }
}

std::vector<ContentGroup> Grouping::groups()
{
    const auto isFew = [](const Numbers &numbers) { return numbers.size() <= openTogether; };
    const auto split = [&](std::vector<Numbers> all) {
        const auto rest = std::ranges::stable_partition(all, isFew);
        std::vector<Numbers> many(std::make_move_iterator(rest.begin()), std::make_move_iterator(rest.end()));
        all.erase(rest.begin(), rest.end());
        compare(all);
        return many;
    };
    const std::vector<Numbers> many = split(ofOneSize());
    digestEach(split(alikeAtTheEnds(many)));
    std::ranges::sort(m_groups, {}, [](const ContentGroup &group) { return group.files.front(); });
    return std::move(m_groups);
}

} // namespace

std::vector<ContentGroup> groupByContent(const std::vector<SeenFile> &files, const JobControl *control)
{
    return Grouping(files, control).groups();
}

} // namespace brellin
