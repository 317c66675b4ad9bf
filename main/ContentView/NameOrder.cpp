#include "ContentView/NameOrder.h"

#include "Base/German.h"
#include "Base/ParallelFor.h"

#include <QCollator>

#include <algorithm>
#include <numeric>
#include <optional>

namespace brellin {

namespace {

/// Names per unit of parallel work.
constexpr std::size_t namesPerPiece = 4096;

QCollator collator()
{
    QCollator order(german());
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    return order;
}

using Keys = std::vector<std::optional<QCollatorSortKey>>;

/// `text(i)` returns the text at index i.
template <class Text>
Keys keysOf(std::size_t count, const Text &text)
{
    Keys keys(count);
    const std::size_t pieces = (count + namesPerPiece - 1) / namesPerPiece;
    parallelFor(pieces, [&](std::size_t piece) {
        const QCollator order = collator();
        const std::size_t end = std::min(count, (piece + 1) * namesPerPiece);
        for (std::size_t i = piece * namesPerPiece; i < end; ++i)
            keys[i].emplace(order.sortKey(text(i)));
    });
    return keys;
}

std::vector<std::uint32_t> ranksOf(const Keys &keys)
{
    std::vector<std::uint32_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0u);
    std::ranges::sort(order, [&keys](std::uint32_t a, std::uint32_t b) { return keys[a]->compare(*keys[b]) < 0; });
    std::vector<std::uint32_t> ranks(keys.size());
    std::uint32_t rank = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && keys[order[i - 1]]->compare(*keys[order[i]]) != 0)
            rank = static_cast<std::uint32_t>(i);
        ranks[order[i]] = rank;
    }
    return ranks;
}

} // namespace

std::vector<std::uint32_t> nameRanks(const std::vector<FileItem> &items)
{
    return ranksOf(keysOf(items.size(), [&items](std::size_t i) { return items[i].name(); }));
}

std::vector<std::uint32_t> textRanks(const std::vector<QString> &texts)
{
    return ranksOf(keysOf(texts.size(), [&texts](std::size_t i) { return texts[i]; }));
}

} // namespace brellin
