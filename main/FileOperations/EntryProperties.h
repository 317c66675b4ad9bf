#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "FileOperations/EntryFacts.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Total size of the entries, as far as counted.
struct EntrySize {
    enum class State { Counting, Counted, Stopped };
    State state = State::Counting;
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t unreadable = 0; ///< folders that could not be read and entries that could not be counted

    bool operator==(const EntrySize &) const = default;
};

/// SHA-256 of one file, computed on request.
struct EntryDigest {
    enum class State { None, Running, Done, Failed };
    State state = State::None;
    QString text;        ///< 64 hexadecimal digits, or the error
    double progress = 0; ///< 0 to 1

    bool operator==(const EntryDigest &) const = default;
};

/// Model of the properties sheet for one or more entries: attributes, size and digest are computed in the background.
/// Lives on the main thread; destroying it cancels the work.
class EntryProperties : public Model<EntryProperties> {
public:
    /// `mayChange`: whether an entry's tags may be changed. Called on workers; empty allows all.
    explicit EntryProperties(std::vector<Location> entries, std::function<bool(const Location &)> mayChange = {});
    ~EntryProperties() override;

    Published<std::optional<EntryFacts>> facts; ///< none until read
    Published<EntrySize> size;
    Published<EntryDigest> digest;
    Published<std::optional<QString>> errorMessage; ///< why tags could not be changed
    Published<int> tagChanges{0}; ///< incremented after each attempt to change tags, failed ones included

    const std::vector<Location> &entries() const { return m_entries; }

    /// Reads the facts, also again.
    void read();
    /// Counts again from zero; ignored while counting.
    void count();
    void stopCounting() { m_counting.cancel(); }
    void makeDigest();
    void stopDigest() { m_digesting.cancel(); }
    /// Adds the tag to all entries or, if all have it, removes it. Ignored while tags are being read or changed.
    void toggleTag(const QString &tag);

private:
    struct Tagged {
        Result<void> written;
        EntryFacts facts; ///< read after writing
    };

    const std::vector<Location> m_entries;
    const std::function<bool(const Location &)> m_mayChange;
    // Separate threads, so that a long count does not delay tags.
    const std::shared_ptr<QThreadPool> m_readingPool;
    const std::shared_ptr<QThreadPool> m_countingPool;
    const std::shared_ptr<QThreadPool> m_digestPool;
    Job<EntryFacts> m_reading;
    Job<EntrySize> m_counting;
    Job<Result<QByteArray>> m_digesting;
    Job<Tagged> m_tagging;
};

} // namespace brellin
