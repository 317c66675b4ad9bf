#pragma once

#include "ContentView/FileItem.h"

#include <QByteArray>
#include <QSet>

#include <vector>

namespace brellin {

/// The selected entries of a pane by their paths. Cheap to copy, and small even where everything is selected.
class Selection {
public:
    Selection() = default;
    explicit Selection(const std::vector<Location> &locations);

    bool empty() const { return m_paths.isEmpty(); }
    std::size_t size() const { return static_cast<std::size_t>(m_paths.size()); }
    bool contains(const FileItem &item) const;
    bool contains(const Location &location) const;

    void insert(const FileItem &item);
    void insert(const Location &location);
    void remove(const Location &location);

    bool operator==(const Selection &) const = default;

private:
    QSet<QByteArray> m_paths;
};

} // namespace brellin
