#include "ContentView/BrowserModelParts.h"
#include "ContentView/BrowserTexts.h"

namespace brellin {

namespace {

bool isFolder(const Location &location)
{
    std::error_code error;
    return std::filesystem::is_directory(location, error);
}

} // namespace

void BrowserModel::navigate(const Location &folder, History history)
{
    const Location target = standardised(folder);
    leaveSpecialPlaces();
    const bool leftTag = tagFilter.get().has_value();
    if (leftTag)
        leaveSearch();
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
        if (history == History::Keep)
            return;
        m_backStack.push_back(from);
        m_forwardStack.clear();
    };
    travel(target, remember, {});
}

/// Goes there if it is a folder. `remember` puts the way into the history, `forget` takes a folder that is gone out of it.
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
    leaveSpecialPlaces();
    m_load.drop();
    m_renameAfterLoad.reset();
    cancelRename();
    publish(loading, false);
    clearError();
    publish(current, folder);
    setSelection({});
    leaveSearch();
    restoreFolderView();
    load();
}

void BrowserModel::mirrorHistory()
{
    publish(canGoBack, !m_backStack.empty());
    publish(canGoForward, !m_forwardStack.empty());
}

/// Takes the last folder off one stack and leaves the present one on the other.
void BrowserModel::go(std::vector<Location> &from, std::vector<Location> &to)
{
    if (from.empty())
        return;
    const Location target = from.back();
    leaveSpecialPlaces();
    const auto takeOff = [&from, target] {
        if (!from.empty() && from.back() == target)
            from.pop_back();
    };
    const auto remember = [this, &to, takeOff] {
        takeOff();
        to.push_back(current.get());
    };
    travel(target, remember, takeOff);
}

void BrowserModel::goBack()
{
    go(m_backStack, m_forwardStack);
}

void BrowserModel::goForward()
{
    go(m_forwardStack, m_backStack);
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

void BrowserModel::choose(const SidebarItem &item)
{
    using enum SidebarItem::Kind;
    if (item.kind == Quick || item.kind == Tree || item.kind == Place) {
        const bool isShown = standardised(item.location) == current.get();
        if (!isShown || showsSpecialPlace() || tagFilter.get())
            navigate(item.location);
        return;
    }
    if (item.kind == Tag) {
        showTag(item.name);
        return;
    }
    m_check.drop();
    publish(showPhotos, item.kind == Photos);
    publish(showNetwork, item.kind == Network);
    publish(showAgent, item.kind == Agent);
    publish(showDevice, item.kind == Device ? std::optional(item.name) : std::nullopt);
}

bool BrowserModel::showsSpecialPlace() const
{
    return showPhotos.get() || showNetwork.get() || showAgent.get() || showDevice.get();
}

void BrowserModel::leaveSpecialPlaces()
{
    publish(showPhotos, false);
    publish(showNetwork, false);
    publish(showAgent, false);
    publish(showDevice, std::optional<QString>());
}

} // namespace brellin
