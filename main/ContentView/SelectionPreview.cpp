#include "ContentView/SelectionPreview.h"

#include <QHash>

#include <algorithm>

namespace brellin {

PreviewSummary previewOfSelection(const DisplayedItems &rows, const Selection &selection,
                                  const KnownFolderSize &folderSize)
{
    PreviewSummary summary;
    QHash<QString, std::size_t> kinds;
    for (std::size_t row = 0; row < rows.size() && summary.count < selection.size(); ++row) {
        const FileItem &item = rows[row];
        if (!selection.contains(item))
            continue;
        ++summary.count;
        ++kinds[item.kind];
        if (summary.onTop.size() < PreviewSummary::mostOnTop)
            summary.onTop.push_back({item.location(), item.modified, item.isFolder});
        const std::optional<std::int64_t> size = item.isFolder ? folderSize(item) : item.size;
        summary.bytes += size.value_or(0);
        summary.wholeSize = summary.wholeSize && size;
    }
    for (auto kind = kinds.cbegin(); kind != kinds.cend(); ++kind)
        summary.kinds.emplace_back(kind.key(), kind.value());
    std::ranges::sort(summary.kinds, [](const auto &a, const auto &b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    return summary;
}

} // namespace brellin
