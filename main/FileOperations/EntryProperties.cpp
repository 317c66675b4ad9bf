#include "FileOperations/EntryProperties.h"

#include "Base/AbandonablePool.h"
#include "Disk/Digest.h"
#include "Features/FileTags.h"
#include "Features/FolderCount.h"
#include "FileOperations/OperationTexts.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

/// While it runs, `control` publishes the bytes counted as done, and the files counted as total.
EntrySize countEntries(const std::vector<Location> &entries, JobControl &control)
{
    EntrySize size{EntrySize::State::Counted};
    for (const Location &entry : entries) {
        const Result<FolderCount> count = countFolder(entry, &control);
        if (control.cancelled()) {
            size.state = EntrySize::State::Stopped;
            return size;
        }
        if (!count) {
            ++size.unreadable;
            continue;
        }
        size.bytes += count->bytes;
        size.files += count->files;
        size.unreadable += count->unreadable;
        control.setDone(size.bytes);
        control.setTotal(size.files);
    }
    return size;
}

Result<void> toggleAllowed(const QString &tag, const std::vector<Location> &entries,
                           const std::function<bool(const Location &)> &mayChange)
{
    if (mayChange && !std::ranges::all_of(entries, mayChange))
        return failure(operationTexts::systemRefusal());
    return FileTags::toggle(tag, entries);
}

} // namespace

EntryProperties::EntryProperties(std::vector<Location> entries, std::function<bool(const Location &)> mayChange)
    : m_entries(std::move(entries))
    , m_mayChange(std::move(mayChange))
    , m_readingPool(abandonablePool())
    , m_countingPool(abandonablePool())
    , m_digestPool(abandonablePool())
{
    read();
    count();
}

EntryProperties::~EntryProperties() = default;

void EntryProperties::read()
{
    m_reading.start(
        *m_readingPool, [entries = m_entries](JobControl &control) { return readEntryFacts(entries, control); },
        [this](EntryFacts read) { publish(facts, std::optional(std::move(read))); });
}

void EntryProperties::count()
{
    if (m_counting.running())
        return;
    publish(size, EntrySize());
    m_counting.start(
        *m_countingPool, [entries = m_entries](JobControl &control) { return countEntries(entries, control); },
        [this](const EntrySize &counted) { publish(size, counted); },
        [this](const JobControl &control) {
            publish(size, EntrySize{EntrySize::State::Counting, control.done(), control.total(), 0});
        });
}

void EntryProperties::makeDigest()
{
    const bool possible = facts.get() && facts.get()->digestible;
    if (!possible || m_digesting.running())
        return;
    publish(digest, EntryDigest{EntryDigest::State::Running, {}, 0});
    const double whole = std::max(1.0, static_cast<double>(*facts.get()->digestible));
    m_digesting.start(
        *m_digestPool,
        [file = m_entries.front()](JobControl &control) { return sha256(file, &control, DigestProgress::CountBytes); },
        [this](const Result<QByteArray> &made) {
            if (made)
                publish(digest, EntryDigest{EntryDigest::State::Done, QString::fromLatin1(*made), 1});
            else if (made.error().isCancelled())
                publish(digest, EntryDigest());
            else
                publish(digest, EntryDigest{EntryDigest::State::Failed, made.error().message, 0});
        },
        [this, whole](const JobControl &control) {
            const double share = std::min(1.0, static_cast<double>(control.done()) / whole);
            publish(digest, EntryDigest{EntryDigest::State::Running, {}, share});
        });
}

/// One change at a time, since toggling depends on the tags present.
void EntryProperties::toggleTag(const QString &tag)
{
    if (m_tagging.running() || m_reading.running())
        return;
    publish(errorMessage, std::optional<QString>());
    m_tagging.start(
        *m_readingPool,
        [tag, entries = m_entries, mayChange = m_mayChange](JobControl &control) {
            Result<void> written = toggleAllowed(tag, entries, mayChange);
            return Tagged{std::move(written), readEntryFacts(entries, control)};
        },
        [this](const Tagged &tagged) {
            publish(facts, std::optional(tagged.facts));
            if (!tagged.written)
                publish(errorMessage, std::optional(tagged.written.error().message));
            publish(tagChanges, tagChanges.get() + 1);
        });
}

} // namespace brellin
