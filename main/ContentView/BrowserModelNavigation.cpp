#include "ContentView/BrowserModel.h"
#include "ContentView/BrowserTexts.h"

namespace brellin {

namespace {

template <class T>
std::optional<T> when(bool holds, const T &value)
{
    return holds ? std::optional(value) : std::nullopt;
}

bool isFolder(const Location &location)
{
    std::error_code error;
    return std::filesystem::is_directory(location, error);
}

} // namespace

void BrowserModel::navigate(const Location &folder, History history)
{
    const Location target = standardised(folder);
    const bool leftTag = place.get().kind == Place::Kind::Tag;
    uncoverFolder();
    if (leftTag)
        leaveResults();
    if (target == current.get()) {
        m_check.drop();
        if (leftTag)
            load();
        else
            reload();
        return;
    }
    const Location from = current.get();
    const auto remember = [this, from, history] {
        if (history == History::Record)
            m_history.went(from);
    };
    travel(target, remember, {});
}

/// Goes to the folder if it exists. Then calls `remember` to enter the step into the history, otherwise `forget` to
/// remove the missing folder from it.
void BrowserModel::travel(const Location &folder, const std::function<void()> &remember,
                          const std::function<void()> &forget)
{
    const bool known = folder == m_services.folders.trash;
    m_check.start(
        m_services.workers, {folder}, [folder, known](const JobControl &) { return known || isFolder(folder); },
        [=, this](bool exists) {
            if (exists) {
                remember();
                arrive(folder);
                return;
            }
            if (forget)
                forget();
            mirrorHistory();
            setOperationError(notFoundText(folder));
        },
        [=, this] { setOperationError(notAnsweringText(folder)); });
}

void BrowserModel::arrive(const Location &folder)
{
    m_reader.drop();
    m_renameAfterLoad.reset();
    cancelRename();
    publish(loading, false);
    clearError();
    leaveSearch();
    setPlace(placeOf(folder, m_services.folders));
    setSelection({});
    restoreFolderView();
    load();
}

void BrowserModel::mirrorHistory()
{
    publish(canGoBack, !m_history.back().empty());
    publish(canGoForward, !m_history.forward().empty());
}

void BrowserModel::step(NavigationHistory::Way way)
{
    const std::optional<Location> target = m_history.next(way);
    if (!target)
        return;
    uncoverFolder();
    const auto remember = [this, way, to = *target] { m_history.stepped(way, to, current.get()); };
    const auto forget = [this, way, to = *target] { m_history.forget(way, to); };
    travel(*target, remember, forget);
}

void BrowserModel::goBack()
{
    step(NavigationHistory::Way::Back);
}

void BrowserModel::goForward()
{
    step(NavigationHistory::Way::Forward);
}

void BrowserModel::goUp()
{
    const Location parent = current.get().parent_path();
    if (parent != current.get())
        navigate(parent);
}

void BrowserModel::navigateToTyped(const QString &text)
{
    const std::string typed = text.trimmed().toStdString();
    if (typed.empty())
        return;
    const bool fromHome = typed == "~" || typed.starts_with("~/");
    if (fromHome)
        navigate(m_services.folders.home / typed.substr(std::min<std::size_t>(typed.size(), 2)));
    else
        navigate(current.get() / locationFromText(QString::fromStdString(typed)));
}

/// Keeps a search that already runs below the chosen folder.
void BrowserModel::choose(const SidebarItem &item)
{
    const Place wanted = placeOf(item, m_services.folders);
    if (place.get() != Place::search(wanted.location, place.get().name))
        showPlace(wanted);
}

void BrowserModel::showPlace(const Place &wanted)
{
    using enum Place::Kind;
    switch (wanted.kind) {
    case Folder:
    case Trash:
        if (place.get() == Place::search(wanted.location, place.get().name))
            leaveResults();
        else if (place.get() != wanted)
            navigate(wanted.location);
        return;
    case Search:
        publish(searchText, wanted.name);
        runSearch();
        return;
    case Tag:
        showTag(wanted.name);
        return;
    case Photos:
    case Network:
    case Agent:
    case Device:
    case Storage:
        showPage(wanted);
        return;
    }
}

void BrowserModel::showPage(const Place &page)
{
    m_check.drop();
    const Place before = place.get();
    if (!before.coversFolder())
        m_covered = before;
    leaveSearch();
    setPlace(page);
    if (before.kind == Place::Kind::Search || before.kind == Place::Kind::Tag)
        showListing();
}

void BrowserModel::leavePage()
{
    if (place.get().coversFolder())
        showPlace(m_covered);
}

void BrowserModel::uncoverFolder()
{
    if (place.get().coversFolder())
        setPlace(placeOf(current.get(), m_services.folders));
}

/// All changes of the place and of what is derived from it are published here.
void BrowserModel::setPlace(const Place &to)
{
    using enum Place::Kind;
    if (to.kind == Folder || to.kind == Trash)
        publish(current, to.location);
    publish(searching, to.kind == Search);
    publish(tagFilter, when(to.kind == Tag, to.name));
    publish(showPhotos, to.kind == Photos);
    publish(showNetwork, to.kind == Network);
    publish(showAgent, to.kind == Agent);
    publish(showDevice, when(to.kind == Device, to.name));
    publish(place, to);
}

} // namespace brellin
