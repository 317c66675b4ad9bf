#pragma once

#include "Base/Mailbox.h"
#include "Base/Published.h"
#include "ContentView/EntryChange.h"
#include "ContentView/FileItems.h"
#include "ContentView/ItemOrder.h"
#include "ContentView/Listing.h"
#include "ContentView/NavigationHistory.h"
#include "ContentView/SearchRun.h"
#include "ContentView/Selection.h"
#include "ContentView/ViewMode.h"
#include "Disk/FileCall.h"
#include "Disk/MountWorkers.h"
#include "Disk/Volumes.h"
#include "Features/FolderColors.h"
#include "Features/FolderSizes.h"
#include "Features/TagSearch.h"
#include "Places/KnownFolders.h"
#include "Places/SidebarItem.h"
#include "System/UserDefaults.h"

#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

class FolderWatcher;

/// What a pane works with; all of it outlives the pane.
struct BrowserServices {
    UserDefaults &defaults;
    const Volumes &volumes;
    FileActions &files;
    const KnownFolders &folders;
    MountWorkers &workers;
    FolderSizes &sizes;
    FolderColors &colors;
    const TagSearch &tagSearch;
    /// Whether an entry may be made or renamed at this place: not in the system's own. Called on workers; empty: everywhere.
    MayChange mayChange = {};
    /// Searches below a folder. Called on workers.
    std::function<FolderSearchResult(SearchMatches &, const Location &folder, const QString &query, HiddenEntries,
                                     const JobControl *)>
        search = searchInto;
};

/// One pane of the browser: the folder it shows, its history, what is listed and selected, the search, and renaming in place.
/// Lives on the main thread; file calls run on workers, and an answer that comes after the user has moved on is dropped.
class BrowserModel : public Model<BrowserModel> {
public:
    /// Shows `start` at once.
    BrowserModel(const BrowserServices &services, const Location &start);
    ~BrowserModel() override;

    /// What the pane shows. `current`, `searching`, `tagFilter`, `showPhotos` and their like say parts of it and change before
    /// it does: an observer of `place` finds all of them in agreement.
    Published<Place> place;

    // What is listed.
    Published<Location> current;                    ///< the folder shown, or below a page; standardised
    Published<FileItems> items;                     ///< the folder's listing, or what a search or a tag found
    Published<DisplayedItems> displayedItems;       ///< the rows of the views
    Published<Selection> selection;                 ///< a subset of `items`
    Published<SortOrder> sortOrder;                 ///< by name, as long as nobody chose
    Published<bool> showHidden;                     ///< list hidden entries
    Published<bool> loading;                        ///< a read in the background is under way
    Published<std::optional<qint64>> freeSpace;     ///< bytes available on the folder's volume
    Published<std::optional<QString>> errorMessage; ///< shown in place of the list, or above one that is there
    Published<QString> emptyText;                   ///< what stands where no rows are; empty while there are some
    Published<QString> statusText;                  ///< the status line
    Published<ViewMode> viewMode;
    Published<double> iconSize{72.0}; ///< points, 40 to 256

    // Searching.
    Published<QString> searchText;
    Published<bool> searching;                   ///< `items` are, or are about to be, what a search found
    Published<bool> searchRunning;               ///< the search is under way
    Published<bool> searchCapped;                ///< there are more matches than the 3,000 that are listed
    Published<std::optional<QString>> tagFilter; ///< the tag whose entries are shown

    // Navigation.
    Published<bool> canGoBack;
    Published<bool> canGoForward;
    Published<bool> showPhotos;
    Published<bool> showNetwork;
    Published<bool> showAgent;
    Published<std::optional<QString>> showDevice;

    // Renaming.
    Published<std::optional<FileItem>> renameTarget;             ///< renamed in place now
    Published<QString> renameText;                               ///< its new name so far
    Published<std::optional<std::vector<Location>>> batchRename; ///< asks for the sheet that renames several

    /// The other pane of a window with two.
    QPointer<BrowserModel> partner;

    /// Reads `folder`; pure, callable from every thread.
    static Listing read(const Location &folder, HiddenEntries hidden, const Volumes &volumes)
    {
        return readListing(folder, hidden, volumes);
    }

    /// Reads the folder again and watches it. A local folder is there on return unless it takes long.
    void load();
    /// The refresh command: counts folder sizes anew and runs an active search again.
    void reload();

    void setSelection(Selection selected);
    void selectAll();
    std::vector<FileItem> selectedItems() const;
    /// What is selected, looked up once for each selection and listing.
    const SelectionSummary &selectionSummary() const;
    /// The selected entry where there is just one.
    const FileItem *onlySelected() const;
    void setSortOrder(SortOrder order);
    bool sortsBySize() const;
    void setShowHidden(bool shown);
    /// A filter that an embedding screen puts on the list (a folder picker). Called on workers.
    void setItemFilter(ItemFilter filter);
    /// The rows that are on the screen: the sizes of their folders are counted first.
    void setVisibleRows(std::size_t first, std::size_t count);
    /// Whether `errorMessage` says why the folder cannot be read: it then stands in place of the list.
    bool readFailed() const { return m_readFailed; }
    /// Takes away a message about something that failed (not that the folder cannot be read).
    void dismissError();
    /// Says what an operation that somebody else carried out could not do.
    void showError(const QString &message) { setOperationError(message); }

    void setViewMode(ViewMode mode);
    void setIconSize(double size);
    /// Steps of the icon size; shows icons where they are not shown yet.
    void zoomIcons(double delta);
    void saveFolderView();
    void restoreFolderView();

    /// Searches for the text shortly after the last change.
    void setSearchText(const QString &text);
    /// Searches at once; an empty text puts the listing back.
    void runSearch();
    void showTag(const QString &tag);

    /// Shows any place; a search is one below `current`. What the place before was made of ends.
    void showPlace(const Place &wanted);
    /// From a page to the place that it covers; elsewhere nothing.
    void leavePage();

    enum class History { Record, Keep };
    /// The one way to another folder. What is no folder is said in `errorMessage`, and the pane stays where it was.
    void navigate(const Location &folder, History history = History::Record);
    void navigateToTyped(const QString &text);
    void goBack();
    void goForward();
    void goUp();
    /// What a choice in the sidebar leads to.
    void choose(const SidebarItem &item);
    const std::vector<Location> &backStack() const { return m_history.back(); }
    const std::vector<Location> &forwardStack() const { return m_history.forward(); }

    /// Creates "Neuer Ordner" and starts renaming it.
    void newFolder();
    /// One selected entry is renamed in place, several by the sheet.
    void beginRenameSelection();
    void startRename(const FileItem &item);
    void setRenameText(const QString &text);
    void commitRename();
    void cancelRename();
    void closeBatchRename();
    /// Calls `told` after each new folder (`from` is empty then) and each renaming of this pane's, for whoever takes such
    /// things back.
    void onOwnChange(std::function<void(const Location &from, const Location &to)> told)
    {
        m_ownChange = std::move(told);
    }

private:
    /// What starts a reading, which decides how it is awaited.
    enum class Refresh { ByUser, ByWatcher };
    struct Reading;
    struct Relay;

    void startReading(Refresh why);
    std::function<Reading(const JobControl &)> reading(Refresh why);
    void apply(Reading reading, const Location &folder);
    void applyOutcome(const Listing &listing);
    void showNotAnswering();
    void showListing();
    void setItems(const FileItems &shown, std::optional<DisplayedItems> rows = std::nullopt);
    void display();
    void show(DisplayedItems rows);
    KnownFolderSize sizesOfFolders() const;
    void keepWhatIsThere();
    void requestSizes();
    void heardSizes();
    std::optional<std::int64_t> knownSize(const FileItem &folder) const;
    void updateTexts();
    QString selectionText() const;
    QString emptyTextNow() const;
    void setOperationError(const QString &message);
    void clearError();

    void debouncedReload();
    void takeChanges();

    void setPlace(const Place &to);
    void showPage(const Place &page);
    void uncoverFolder();
    void travel(const Location &folder, const std::function<void()> &remember, const std::function<void()> &forget);
    void arrive(const Location &folder);
    void mirrorHistory();
    void step(NavigationHistory::Way way);

    bool showsListing() const;
    void leaveSearch();
    void leaveResults();
    void findTag();
    void search(SearchRun::Work work);
    void found(const FolderSearchResult &result);

    void change(const Location &where, std::function<EntryChange(const JobControl &)> work);
    void changed(const EntryChange &made);
    void showChanged(const EntryChange &made);
    void renameCreated();

    BrowserServices m_services;
    Place m_covered;     ///< what a page was opened over
    FileItems m_listing; ///< the last reading, kept while a search or a tag view replaces `items`
    Location m_listed;   ///< the folder that it is of
    mutable std::optional<SelectionSummary> m_summary; ///< of `selection` in `items`, where somebody has asked
    ItemFilter m_itemFilter;
    int m_displayWish = 0;     ///< counts the changes of order and filter
    bool m_readFailed = false; ///< `errorMessage` says why the folder cannot be read
    bool m_restoring = false;  ///< nothing of the view is saved
    std::size_t m_firstVisible = 0;
    std::size_t m_visibleCount = 0;

    NavigationHistory m_history;

    FileCall<Reading> m_load;
    FileCall<DisplayedItems> m_display; ///< puts many entries in order
    SearchRun m_search;
    FileCall<bool> m_check; ///< whether there is a folder to go to
    FileCall<EntryChange> m_change;
    std::function<void(const Location &, const Location &)> m_ownChange;
    QTimer m_searchSoon;
    QTimer m_displaySoon;
    QTimer m_reloadSoon;
    Mailbox m_mailbox;              ///< what watchers tell this pane
    std::shared_ptr<Relay> m_relay; ///< through which watchers reach this pane
    std::shared_ptr<FolderWatcher> m_watcher;
    std::chrono::steady_clock::time_point m_lastReadEnded;
    std::chrono::steady_clock::duration m_lastReadTook{};
    std::optional<Location> m_renameAfterLoad; ///< made just now: selected and renamed as soon as it is listed
};

} // namespace brellin
