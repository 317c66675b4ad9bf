#pragma once

#include "ContentView/ItemOrder.h"

#include <QByteArray>
#include <QSet>

#include <optional>
#include <vector>

namespace brellin {

/// The paths of a pane's selected entries. Implicitly shared, so cheap to copy. If a whole list is selected, keeps only a
/// reference to that list until entries of another one are looked up. Not thread-safe.
class Selection {
public:
    Selection() = default;
    explicit Selection(const std::vector<Location> &locations);
    /// All displayed rows; in constant time unless the filter hides entries.
    static Selection ofAll(const DisplayedItems &rows);

    bool empty() const { return size() == 0; }
    std::size_t size() const { return m_list.empty() ? static_cast<std::size_t>(m_paths.size()) : m_list.size(); }
    bool contains(const FileItem &item) const;
    bool contains(const Location &location) const;

    /// Reserves space for `count` entries.
    void reserve(std::size_t count) { paths().reserve(static_cast<qsizetype>(count)); }
    void insert(const FileItem &item);
    void insert(const Location &location);
    void remove(const Location &location);

    bool operator==(const Selection &other) const;

private:
    bool isInList(const FileItem &item) const;
    QSet<QByteArray> &paths() const;

    mutable FileItems m_list; ///< selected as a whole; `m_paths` is then empty
    mutable QSet<QByteArray> m_paths;
};

/// Totals of a selection for commands, preview and status line, found in one pass without copying items.
struct SelectionSummary {
    std::size_t files = 0;
    std::int64_t fileBytes = 0;
    std::vector<std::uint32_t> folders; ///< indexes into the list
    std::optional<std::uint32_t> first; ///< index of the first selected entry

    std::size_t count() const { return files + folders.size(); }
    bool onlyFolders() const { return files == 0 && !folders.empty(); }

    bool operator==(const SelectionSummary &) const = default;
};

/// Summarises the selected entries of `items`.
SelectionSummary summaryOf(const FileItems &items, const Selection &selection);

} // namespace brellin
