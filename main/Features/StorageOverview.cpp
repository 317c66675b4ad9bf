#include "Features/StorageOverview.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"

#include <utility>

namespace brellin {

namespace {

QString filesText(std::int64_t files)
{
    return counted(files, QStringLiteral("Datei"), QStringLiteral("Dateien"));
}

/// Remarks to the total: shared by hard links, or unreadable.
QString remarks(const StorageTotals &totals)
{
    QString text;
    if (totals.furtherLinks > 0)
        text += QStringLiteral(" · %1 derselben Dateien (Hardlinks) nur einmal gezählt: %2")
                    .arg(counted(totals.furtherLinks, QStringLiteral("weiterer Name"), QStringLiteral("weitere Namen")),
                         sizeText(totals.sharedBytes));
    if (totals.unreadable > 0)
        text += QStringLiteral(" · %1 nicht lesbar")
                    .arg(counted(totals.unreadable, QStringLiteral("Ordner"), QStringLiteral("Ordner")));
    return text;
}

} // namespace

StorageOverview::StorageOverview() = default;

StorageOverview::~StorageOverview() = default;

void StorageOverview::count(const Location &folder)
{
    cancel();
    m_tree = std::make_shared<StorageTree>(standardised(folder));
    // A new thread each time: one that is blocked by a dead volume must not delay the next count.
    m_pool = abandonablePool();
    m_job = std::make_unique<Job<Counted>>();
    publish(errorMessage, std::optional<QString>());
    publish(top, m_tree->top());
    publish(shown, m_tree->top());
    publish(counting, true);
    show();
    m_job->start(
        *m_pool,
        [tree = m_tree](JobControl &control) {
            const Result<void> done = tree->count(control);
            return done ? Counted() : Counted{done.error().message, done.error().isCancelled()};
        },
        [this](const Counted &counted) { finished(counted); }, [this](const JobControl &) { show(); });
}

void StorageOverview::cancel()
{
    if (m_job)
        m_job->cancel();
}

void StorageOverview::finished(const Counted &counted)
{
    publish(counting, false);
    show();
    if (counted.cancelled)
        publish(status, QStringLiteral("Abgebrochen · ") + status.get());
    else if (counted.error)
        publish(errorMessage, counted.error);
}

void StorageOverview::goDown(const Location &folder)
{
    if (!m_tree || !m_tree->holds(folder))
        return;
    publish(shown, folder);
    show();
}

void StorageOverview::goUp()
{
    if (!m_tree || !canGoUp())
        return;
    publish(shown, Location(shown.get().parent_path()));
    show();
}

void StorageOverview::removed(const std::vector<Location> &gone)
{
    if (!m_tree)
        return;
    for (const Location &entry : gone)
        m_tree->remove(entry);
    // The folder on display may have gone too.
    Location remaining = shown.get();
    while (!m_tree->holds(remaining) && remaining != top.get())
        remaining = remaining.parent_path();
    publish(shown, remaining);
    show();
}

void StorageOverview::show()
{
    const StorageTotals here = m_tree->totalsOf(shown.get());
    publish(entries, m_tree->entries(shown.get()));
    publish(bytes, here.bytes);
    publish(files, here.files);
    const StorageTotals all = m_tree->totals();
    if (counting.get())
        publish(status, QStringLiteral("Zähle … %1, %2").arg(filesText(all.files), sizeText(all.bytes)));
    else
        publish(status, filesText(all.files) + QStringLiteral(", ") + sizeText(all.bytes) + remarks(all));
}

} // namespace brellin
