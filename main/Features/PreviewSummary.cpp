#include "Features/PreviewSummary.h"

#include "Base/German.h"

#include <algorithm>
#include <numeric>

namespace brellin {

namespace {

constexpr std::size_t mostKinds = 6;

PreviewFact kindRow(const QString &kind, std::size_t count)
{
    return {kind, german().toString(static_cast<qlonglong>(count)), {}};
}

} // namespace

QString summaryTitle(const PreviewSummary &summary)
{
    return counted(static_cast<qint64>(summary.count), QStringLiteral("Element"), QStringLiteral("Elemente"));
}

QString summarySize(const PreviewSummary &summary)
{
    return (summary.wholeSize ? QString() : QStringLiteral("mindestens ")) + sizeText(summary.bytes);
}

std::vector<PreviewFact> summaryFacts(const PreviewSummary &summary)
{
    const auto &kinds = summary.kinds;
    const std::size_t shown = kinds.size() <= mostKinds ? kinds.size() : mostKinds - 1;
    std::vector<PreviewFact> facts;
    for (std::size_t row = 0; row < shown; ++row)
        facts.push_back(kindRow(kinds[row].first, kinds[row].second));
    if (shown < kinds.size())
        facts.push_back(
            kindRow(QStringLiteral("Anderes"),
                    std::accumulate(kinds.begin() + static_cast<std::ptrdiff_t>(shown), kinds.end(), std::size_t(0),
                                    [](std::size_t sum, const auto &kind) { return sum + kind.second; })));
    return facts;
}

} // namespace brellin
