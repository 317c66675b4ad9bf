#include "ContentView/BrowserModel.h"
#include "ContentView/BrowserTexts.h"

namespace brellin {

namespace {

std::filesystem::file_type typeOf(const Location &location)
{
    std::error_code error;
    return std::filesystem::status(location, error).type();
}

} // namespace

void BrowserModel::navigate(const Location &folder, History history)
{
    go(folder, history, {});
}

void BrowserModel::go(const Location &folder, History history, std::optional<Arrival> then)
{
    const Location target = standardised(folder);
    const bool leavesTag = place.get().kind == Place::Kind::Tag;
    const bool leavesOverlay = leavesTag || place.get().coversFolder();
    const auto remember = [this, left = visit(), history] {
        if (history == History::Record)
            m_history.went(left);
    };
    if (leavesOverlay) {
        remember();
        leavesTag ? leaveResults() : uncoverFolder();
    }
    if (target == current.get()) {
        m_check.drop();
        m_arrival = std::move(then);
        if (leavesOverlay)
            load();
        else
            reload();
        return;
    }
    const auto arrived = [=, this] {
        if (!leavesOverlay)
            remember();
        arrive(target, then);
    };
    travel(target, arrived, {});
}

/// Calls `arrived` if the folder exists, otherwise `gone` before the error is shown. A page is left either way.
void BrowserModel::travel(const Location &folder, const std::function<void()> &arrived,
                          const std::function<void()> &gone)
{
    using Type = std::filesystem::file_type;
    const bool known = folder == m_services.folders.trash;
    const auto fail = [this](const QString &why) {
        uncoverFolder();
        mirrorHistory();
        showError(why);
    };
    m_check.start(
        m_services.workers, {folder},
        [folder, known](const JobControl &) { return known ? Type::directory : typeOf(folder); },
        [=, this, typed = m_typed](Type found) {
            if (found == Type::directory) {
                arrived();
                return;
            }
            if (gone)
                gone();
            fail(notFoundText(folder));
            const bool isFile = found != Type::not_found && found != Type::none;
            if (typed)
                publish(refusedPath,
                        std::optional(RefusedPath{*typed, notFoundText(folder), isFile ? folder : Location()}));
        },
        [=] { fail(notAnsweringText(folder)); });
}

void BrowserModel::arrive(const Location &folder, std::optional<Arrival> then)
{
    m_reader.drop();
    m_renameAfterLoad.reset();
    cancelRename();
    publish(loading, false);
    clearError();
    leaveSearch();
    setPlace(placeOf(folder, m_services.folders));
    setSelection({});
    m_arrival = std::move(then);
    restoreFolderView();
    load();
}

PlaceVisit BrowserModel::visit() const
{
    return {place.get(), current.get(), selection.get(), position.get()};
}

/// Call before another place is shown.
void BrowserModel::record()
{
    m_history.went(visit());
    mirrorHistory();
}

void BrowserModel::mirrorHistory()
{
    publish(canGoBack, !m_history.empty(NavigationHistory::Way::Back));
    publish(canGoForward, !m_history.empty(NavigationHistory::Way::Forward));
}

void BrowserModel::goInHistory(NavigationHistory::Way way, std::size_t steps)
{
    const std::vector<PlaceVisit> &visits = m_history.visits(way);
    if (steps == 0 || steps > visits.size())
        return;
    const PlaceVisit target = visits[visits.size() - steps];
    const auto arrived = [this, way, steps, target, left = visit()] {
        m_history.stepped(way, steps, target, left);
        revisit(target);
    };
    const auto gone = [this, way, target] { m_history.forget(way, target); };
    if (target.folder == current.get()) {
        m_check.drop();
        arrived();
    } else {
        travel(target.folder, arrived, gone);
    }
}

/// Shows a place of the history as it was left; its folder exists.
void BrowserModel::revisit(const PlaceVisit &to)
{
    const Arrival then{to.selected, to.position, {}};
    const bool isFolder = to.place == placeOf(to.folder, m_services.folders);
    if (to.folder != current.get()) {
        arrive(to.folder, isFolder ? std::optional(then) : std::nullopt);
    } else if (isFolder) {
        setSelection({});
        m_arrival = then;
        leaveResults();
        load();
    }
    if (to.place.coversFolder())
        openPage(to.place);
    else if (to.place.kind == Place::Kind::Tag)
        openTag(to.place.name);
    else if (to.place.kind == Place::Kind::Search)
        openSearch(to.place);
    if (!isFolder && !to.place.coversFolder())
        m_arrival = then;
    mirrorHistory();
}

void BrowserModel::goBack()
{
    goInHistory(NavigationHistory::Way::Back, 1);
}

void BrowserModel::goForward()
{
    goInHistory(NavigationHistory::Way::Forward, 1);
}

/// Selects the folder that the user came from.
void BrowserModel::goToNearest()
{
    const auto nearest = [from = current.get()](const JobControl &) {
        Location above = from.parent_path();
        while (typeOf(above) != std::filesystem::file_type::directory && above.has_relative_path())
            above = above.parent_path();
        return above;
    };
    m_nearest.start(
        m_services.workers, {current.get()}, nearest, [this](const Location &folder) { navigate(folder); },
        [this, from = current.get()] { showError(notAnsweringText(from)); });
}

void BrowserModel::goUp()
{
    const Location from = current.get();
    if (folderGone.get())
        goToNearest();
    else if (from.parent_path() != from)
        go(from.parent_path(), History::Record, Arrival{Selection({from}), {from, {}}, {}});
}

void BrowserModel::showEntry(const Location &entry)
{
    const Arrival then{Selection({entry}), {entry, {}}, {}};
    if (place.get().isSearchBelow(entry.parent_path())) {
        record();
        leaveResults();
    }
    go(entry.parent_path(), History::Record, then);
}

void BrowserModel::navigateToTyped(const QString &text)
{
    if (text.isEmpty())
        return;
    const std::string typed = text.toStdString();
    const bool fromHome = typed == "~" || typed.starts_with("~/");
    m_typed = text;
    if (fromHome)
        navigate(m_services.folders.home / typed.substr(std::min<std::size_t>(typed.size(), 2)));
    else
        navigate(current.get() / locationFromText(text));
    m_typed.reset();
}

} // namespace brellin
