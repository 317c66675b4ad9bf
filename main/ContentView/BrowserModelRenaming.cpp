#include "ContentView/BrowserModel.h"
#include "ContentView/BrowserTexts.h"

#include <algorithm>

namespace brellin {

namespace {

const QString newFolderName = QStringLiteral("Neuer Ordner");

bool isForbidden(const QString &name)
{
    return name.contains(u'/') || name.contains(u':');
}

} // namespace

void BrowserModel::newFolder()
{
    create(current.get() / newFolderName.toStdString());
}

void BrowserModel::create(const Location &wanted)
{
    change(wanted.parent_path(), [wanted, &files = m_services.files, mayChange = m_services.mayChange](
                                     const JobControl &) { return createFolder(wanted, files, mayChange); });
}

void BrowserModel::beginRenameSelection()
{
    if (selection.get().size() == 1) {
        if (const std::vector<FileItem> selected = selectedItems(); !selected.empty())
            startRename(selected.front());
        return;
    }
    std::vector<Location> several;
    const DisplayedItems &rows = displayedItems.get();
    for (std::size_t row = 0; row < rows.size() && several.size() < selection.get().size(); ++row) {
        if (selection.get().contains(rows[row]))
            several.push_back(rows[row].location());
    }
    if (!several.empty())
        publish(batchRename, std::optional(std::move(several)));
}

void BrowserModel::closeBatchRename()
{
    publish(batchRename, std::optional<std::vector<Location>>());
}

void BrowserModel::startRename(const FileItem &item)
{
    publish(renameRefusal, std::optional<QString>());
    publish(renameText, item.name());
    publish(renameTarget, std::optional(item));
}

void BrowserModel::setRenameText(const QString &text)
{
    if (text != renameText.get())
        publish(renameRefusal, std::optional<QString>());
    publish(renameText, text);
}

void BrowserModel::cancelRename()
{
    m_renameNext.reset();
    if (renameRefusal.get())
        dismissError();
    publish(renameRefusal, std::optional<QString>());
    publish(renameTarget, std::optional<FileItem>());
    publish(renameText, QString());
}

void BrowserModel::commitRename(RenameNext then)
{
    const std::optional<FileItem> target = renameTarget.get();
    const QString name = renameText.get();
    if (!target)
        return;
    m_renameNext = besideRenamed(then);
    if (name.isEmpty() || name == target->name()) {
        finishRename();
        return;
    }
    if (isForbidden(name)) {
        const QString reason = QStringLiteral("Der Name darf keine Zeichen „/“ oder „:“ enthalten.");
        refuseRename(reason);
        showError(reason);
        return;
    }
    const Location from = target->location();
    rename(from, from.parent_path() / name.toStdString());
}

void BrowserModel::leaveRename()
{
    if (renameRefusal.get())
        cancelRename();
    else
        commitRename();
}

/// Call before the error is shown, which then stands at the field only. Published again if it is the same.
void BrowserModel::refuseRename(const QString &reason)
{
    publish(renameRefusal, std::optional<QString>());
    publish(renameRefusal, std::optional(reason));
}

bool BrowserModel::isRenamed(const Location &entry) const
{
    const std::optional<FileItem> &target = renameTarget.get();
    return target && !entry.empty() && target->isAt(entry.native());
}

/// Ends renaming the item; the next one, if any, begins.
void BrowserModel::finishRename()
{
    const std::optional<Location> next = std::exchange(m_renameNext, std::nullopt);
    cancelRename();
    if (next)
        beginNext(*next);
}

void BrowserModel::beginNext(const Location &next)
{
    // Otherwise what was renamed is selected once it is listed.
    m_arrival.reset();
    const FileItems &all = items.get();
    const auto found = std::ranges::find_if(all, [&next](const FileItem &one) { return one.isAt(next.native()); });
    if (found == all.end())
        return;
    setSelection(Selection({next}));
    startRename(*found);
}

std::optional<Location> BrowserModel::besideRenamed(RenameNext which) const
{
    const DisplayedItems &rows = displayedItems.get();
    if (which == RenameNext::None)
        return std::nullopt;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!rows[row].sameEntry(*renameTarget.get()))
            continue;
        const std::size_t beside = which == RenameNext::After ? row + 1 : row - 1;
        return beside < rows.size() ? std::optional(rows[beside].location()) : std::nullopt;
    }
    return std::nullopt;
}

void BrowserModel::rename(const Location &from, const Location &to)
{
    change(from, [from, to, &files = m_services.files, mayChange = m_services.mayChange](const JobControl &) {
        return renameEntry(from, to, files, mayChange);
    });
}

/// Refuses a second change while one is running, since starting it would drop the first one's answer.
void BrowserModel::change(const Location &where, std::function<EntryChange(const JobControl &)> work)
{
    if (m_change.running()) {
        showError(QStringLiteral("Die vorige Änderung ist noch nicht fertig."));
        return;
    }
    m_change.start(
        m_services.workers, {where}, std::move(work), [this](const EntryChange &made) { changed(made); },
        [this, where] { showError(notAnsweringText(where)); });
}

void BrowserModel::changed(const EntryChange &made)
{
    if (!made.outcome) {
        if (isRenamed(made.from))
            refuseRename(made.outcome.error().message);
        const EntryFailure failed{made.from.empty() ? made.to : made.from, made.outcome.error()};
        showFailure(paneFailure(failed.why.message, {failed}, [this, from = made.from, to = made.to](const auto &) {
            from.empty() ? create(to) : rename(from, to);
        }));
        return;
    }
    dismissError();
    m_services.sizes.touched(made.to);
    // The editor closes before its row changes.
    const std::optional<Location> next = std::exchange(m_renameNext, std::nullopt);
    if (isRenamed(made.from))
        cancelRename();
    showChanged(made);
    if (next)
        beginNext(*next);
    if (m_ownChange)
        m_ownChange(made.from, made.to);
}

void BrowserModel::showChanged(const EntryChange &made)
{
    const bool isNew = made.from.empty();
    if (isNew && made.to.parent_path() != current.get())
        return; // navigated away meanwhile
    if (isNew) {
        if (!showsListing()) {
            record();
            leaveResults();
        }
        m_renameAfterLoad = made.to;
        load();
        return;
    }
    if (Selection selected = selection.get(); selected.contains(made.from)) {
        selected.remove(made.from);
        selected.insert(made.to);
        m_arrival = Arrival{std::move(selected), {made.to, {}}, {}};
    }
    if (showsListing())
        reload();
    else
        showChanges({{made.from, made.to}});
}

/// Selects the folder just created and starts renaming it, once it is listed.
void BrowserModel::renameCreated()
{
    const std::optional<Location> created = std::exchange(m_renameAfterLoad, std::nullopt);
    if (!created)
        return;
    for (const FileItem &item : items.get()) {
        if (item.isAt(created->native())) {
            setSelection(Selection({*created}));
            startRename(item);
            return;
        }
    }
}

} // namespace brellin
