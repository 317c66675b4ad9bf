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

/// What entries hold together, as far as it is counted.
struct EntrySize {
    enum class State { Counting, Counted, Stopped };
    State state = State::Counting;
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t unreadable = 0; ///< folders, and entries that could not be counted

    bool operator==(const EntrySize &) const = default;
};

/// The digest of one file, made on request.
struct EntryDigest {
    enum class State { None, Running, Done, Failed };
    State state = State::None;
    QString text;        ///< 64 hexadecimal digits, or why there are none
    double progress = 0; ///< 0 … 1

    bool operator==(const EntryDigest &) const = default;
};

/// The properties of one entry or of several: read, counted and digested in the background. Lives on the main thread; what
/// still works when it goes ends by itself and tells nobody.
class EntryProperties : public Model<EntryProperties> {
public:
    /// `mayChange`: whether an entry's tags may be changed, callable from every thread; without it, every one's may.
    explicit EntryProperties(std::vector<Location> entries, std::function<bool(const Location &)> mayChange = {});
    ~EntryProperties() override;

    Published<std::optional<EntryFacts>> facts; ///< nothing until they are read
    Published<EntrySize> size;
    Published<EntryDigest> digest;
    Published<std::optional<QString>> errorMessage; ///< why a tag was not changed
    Published<int> tagChanges{0};                   ///< how often tags were written

    const std::vector<Location> &entries() const { return m_entries; }

    /// Counts again from the start.
    void count();
    void stopCounting() { m_counting.cancel(); }
    void makeDigest();
    void stopDigest() { m_digesting.cancel(); }
    /// Gives all the tag or, where all carry it, takes it from all.
    void toggleTag(const QString &tag);

private:
    struct Tagged {
        Result<void> written;
        EntryFacts facts; ///< read afterwards
    };
    void read();

    const std::vector<Location> m_entries;
    const std::function<bool(const Location &)> m_mayChange;
    // A thread each, so that a long count holds up no tag.
    const std::shared_ptr<QThreadPool> m_readingPool;
    const std::shared_ptr<QThreadPool> m_countingPool;
    const std::shared_ptr<QThreadPool> m_digestPool;
    Job<EntryFacts> m_reading;
    Job<EntrySize> m_counting;
    Job<Result<QByteArray>> m_digesting;
    Job<Tagged> m_tagging;
};

} // namespace brellin
