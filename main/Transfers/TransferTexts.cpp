#include "Transfers/TransferTexts.h"

#include "Base/German.h"
#include "Transfers/TransferRecord.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

QString elements(qsizetype count)
{
    return counted(count, QStringLiteral("Element"), QStringLiteral("Elemente"));
}

} // namespace

QString transferTitle(TransferKind kind, int count, const QString &destName)
{
    const QString verb = kind == TransferKind::Move ? QStringLiteral("Verschiebe ") : QStringLiteral("Kopiere ");
    return verb + elements(count) + QStringLiteral(" nach „%1“").arg(destName);
}

QString titleOf(const TransferRecord &record)
{
    const QString where = shownName(record.destination);
    if (record.entries.empty() && !record.emptied.empty())
        return QStringLiteral("„%1“ nach „%2“ verschoben").arg(shownName(record.emptied.back().src), where);
    const auto all = static_cast<qsizetype>(record.entries.size());
    const qsizetype moved = std::ranges::count_if(record.entries, &TransferredEntry::moved);
    if (record.kind == TransferKind::Copy || moved == 0)
        return QStringLiteral("%1 nach „%2“ kopiert").arg(elements(all), where);
    const QString text = QStringLiteral("%1 nach „%2“ verschoben").arg(elements(moved), where);
    return moved == all ? text : text + QStringLiteral(", %1 nur kopiert").arg(elements(all - moved));
}

std::optional<std::chrono::seconds> ProgressLine::remaining() const
{
    using namespace std::chrono_literals;
    if (measuring || paused || active < 2s || bytes <= 0 || bytes < totalBytes / 100)
        return std::nullopt;
    const double left = static_cast<double>(std::max<std::int64_t>(0, totalBytes - bytes));
    const double seconds = left / static_cast<double>(bytes) * std::chrono::duration<double>(active).count();
    return std::chrono::seconds(std::llround(seconds));
}

QString ProgressLine::text() const
{
    if (measuring)
        return QStringLiteral("Ermittle Größe …");
    if (flushing)
        return QStringLiteral("Schreibe auf den Datenträger …");
    QString text = QStringLiteral("%1 von %2 · %3 von %4 Dateien")
                       .arg(sizeText(bytes), sizeText(totalBytes), german().toString(static_cast<qlonglong>(files)),
                            german().toString(static_cast<qlonglong>(totalFiles)));
    if (paused)
        return text + QStringLiteral(" · angehalten");
    if (const auto left = remaining())
        text += QStringLiteral(" · noch ") + remainingText(*left);
    return text;
}

QString remainingText(std::chrono::seconds remaining)
{
    const std::int64_t seconds = remaining.count();
    if (seconds < 60)
        return QStringLiteral("%1 Sek.").arg(seconds);
    return QStringLiteral("%1 Min.").arg((seconds + 30) / 60);
}

} // namespace brellin
