#pragma once

#include "Base/Published.h"
#include "ContentView/EntryChange.h"
#include "ContentView/FileItems.h"
#include "ContentView/FolderReader.h"
#include "ContentView/FolderViews.h"
#include "ContentView/ItemOrder.h"
#include "ContentView/Listing.h"
#include "ContentView/NavigationHistory.h"
#include "ContentView/PaneFailure.h"
#include "ContentView/ResultsUpdate.h"
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

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// The ports and shared models of a pane; all must outlive it.
struct BrowserServices {
    UserDefaults &defaults;
    const Volumes &volumes;
    FileActions &files;
    const KnownFolders &folders;
    MountWorkers &workers;
    FolderSizes &sizes;
    FolderColors &colors;
    const TagSearch &tagSearch;
    /// Whether an entry may be created or renamed at this path, i.e. not in a system location. Called on workers; empty
    /// allows all.
    MayChange mayChange = {};
    /// The search below a folder. Called on workers; without a decoder it finds nothing in PDFs.
    FolderSearching search = [](SearchMatches &matches, const FolderQuery &query, const JobControl *control) {
        return searchInto(matches, query, control);
    };
};

/// A typed path that leads to no folder.
struct RefusedPath {
    QString typed;
    QString reason;
    Location file; ///< what is there instead; empty if nothing

    bool operator==(const RefusedPath &) const = default;
};

/// One pane: the current folder, history, listing, selection, search and inline renaming. Lives on the main thread;
/// file calls run on workers, and their answers are dropped if the user has navigated away.
class BrowserModel : public Model<BrowserModel> {
public:
    /// Loads `start`; a local folder is usually listed on return.
    BrowserModel(const BrowserServices &services, const Location &start);
    ~BrowserModel() override;

    /// What the pane shows. `current`, `searching`, `tagFilter`, `showPhotos` and the like are derived from it and
    /// published before it, so observers of `place` see them updated.
    Published<Place> place;

    // Listing
    Published<Location> current;                    ///< the folder shown, or covered by a page; standardised
    Published<FileItems> items;                     ///< the folder's listing, or the matches of a search or tag
    Published<DisplayedItems> displayedItems;       ///< filtered and sorted rows for the views
    Published<Selection> selection;                 ///< subset of `items`
    Published<SortOrder> sortOrder;                 ///< default: by name
    Published<GroupKey> grouping;                   ///< default: none
    Published<bool> showHidden;                     ///< whether hidden entries are listed
    Published<bool> loading;                        ///< the folder is being read in the background
    Published<std::optional<qint64>> freeSpace;     ///< bytes available on the folder's volume
    Published<std::optional<QString>> errorMessage; ///< shown instead of the list, or above it if there is one
    Published<QString> emptyText;                   ///< shown if there are no rows; otherwise empty
    Published<QString> statusText;                  ///< text of the status line
    Published<ViewMode> viewMode;
    Published<double> iconSize{72.0}; ///< in points, 40 to 256
    /// Where the view stands. Written by the view, and by the pane to restore what the user left.
    Published<ViewPosition> position;

    // Search
    Published<QString> searchText;
    Published<SearchTerms> searchTerms;          ///< of the search shown, or of the next one
    Published<bool> searching;                   ///< `items` are, or will be, the matches of a search
    Published<bool> searchRunning;               ///< a search for a text or tag is running
    Published<bool> searchCapped;                ///< more matches exist than the 3,000 listed
    Published<SearchGaps> notSearched;           ///< what the search could not read
    Published<Passages> passages;                ///< where contents of `items` match
    Published<std::optional<QString>> tagFilter; ///< the tag whose entries are shown

    // Navigation
    Published<bool> canGoBack;
    Published<bool> canGoForward;
    Published<std::optional<RefusedPath>> refusedPath; ///< of `navigateToTyped`, until the message is dismissed
    Published<bool> showPhotos;
    Published<bool> showNetwork;
    Published<bool> showAgent;
    Published<std::optional<QString>> showDevice;

    // Renaming
    Published<std::optional<FileItem>> renameTarget; ///< the item being renamed inline
    Published<QString> renameText;                   ///< its new name as typed
    Published<std::optional<QString>> renameRefusal; ///< why `renameText` was refused; the item is still being renamed
    Published<std::optional<std::vector<Location>>> batchRename; ///< requests the batch rename sheet

    /// The other pane of the tab, if there are two.
    QPointer<BrowserModel> partner;

    /// Reads `folder`. Thread-safe; blocking.
    static Listing read(const Location &folder, HiddenEntries hidden, const Volumes &volumes)
    {
        return readListing(folder, hidden, volumes);
    }

    /// Reads the folder again and watches it. A local folder is listed on return unless that takes too long.
    void load();
    /// Reload command: counts folder sizes again and repeats an active search.
    void reload();

    /// Whether an entry that moved in these changes is, or was, listed here.
    bool mayShow(const std::vector<ChangedEntry> &changes) const;
    /// Shows what the program itself changed: in results at once, which are then searched again; a folder is read again.
    void showChanges(const std::vector<ChangedEntry> &changes);

    void setSelection(Selection selected);
    void selectAll();
    std::vector<FileItem> selectedItems() const;
    /// Summary of the selection, cached until selection or items change.
    const SelectionSummary &selectionSummary() const;
    /// The selected item if exactly one is selected, otherwise null. Valid until `items` changes.
    const FileItem *onlySelected() const;
    /// Selects entries and scrolls to the first one, as soon as they are listed.
    void select(const std::vector<Location> &entries);
    /// Selects the first of these that is listed.
    void selectFirstOf(std::vector<Location> entries);
    /// The rows after and before the selection: one of them becomes current when the selected entries leave.
    std::vector<Location> neighboursOfSelection() const;
    void setPosition(const ViewPosition &seen);
    /// Sorts and groups the rows, and stores this for the folder. Folders without an arrangement of their own are shown
    /// in the one chosen last in this pane.
    void arrange(const Arrangement &wanted);
    void setSortOrder(SortOrder order);
    void setGrouping(GroupKey key);
    bool sortsBySize() const;
    /// Whether the view shows details of entries, which are otherwise not read.
    void setDetailsShown(bool shown);
    /// The size of a folder, if it is counted completely.
    std::optional<std::int64_t> knownSize(const FileItem &folder) const;
    void setShowHidden(bool shown);
    /// Sets a filter on the rows, for screens that embed a pane, such as a folder picker. Called
    /// on workers and, for short lists, on the main thread.
    void setItemFilter(ItemFilter filter);
    /// Sets the visible rows, none for a hidden view: sizes are counted from there on first, and again once outdated.
    void setVisibleRows(std::size_t first, std::size_t count);
    /// Whether `errorMessage` says why the folder cannot be read, and is shown instead of the list.
    bool readFailed() const { return m_readFailed; }
    /// Whether the folder does not exist; `goUp` then goes to the nearest one above that does.
    Published<bool> folderGone{false};
    /// Clears the message of a failed operation; keeps the one of an unreadable folder.
    void dismissError();
    /// Shows the failure of an operation carried out elsewhere.
    void showError(const QString &message) { showFailure({message, message, {}, {}}); }
    void showFailure(PaneFailure failure);
    /// The failure that `errorMessage` tells; not that the folder cannot be read.
    const PaneFailure &lastFailure() const { return m_failure; }

    void setViewMode(ViewMode mode);
    void setIconSize(double size);
    /// Changes the icon size by `delta` points; switches to icon view if needed.
    void zoomIcons(double delta);
    void saveFolderView();
    void restoreFolderView();

    /// Searches for the text a moment after the last change.
    void setSearchText(const QString &text);
    /// Searches now; an empty text returns to the listing.
    void runSearch();
    /// Filters narrow the matches at once, those still to come as well; a search runs again if it left out some.
    void setSearchTerms(const SearchTerms &terms);
    /// False if the search has no filters.
    bool clearSearchFilters();
    void showTag(const QString &tag);

    /// Goes to any place and ends the search or tag view shown before. A search runs below `current`, not below its own
    /// folder.
    void showPlace(const Place &wanted);
    /// Returns from a page to the place it covers; otherwise does nothing.
    void leavePage();

    enum class History { Record, Keep };
    /// Goes to another folder; every navigation ends here. If it is no folder, sets `errorMessage` and stays.
    void navigate(const Location &folder, History history = History::Record);
    /// Goes to a path as typed, also relative or with "~"; nothing is trimmed. A path that leads to no folder becomes
    /// `refusedPath`.
    void navigateToTyped(const QString &text);
    void goBack();
    void goForward();
    /// Back or forward by several steps; does nothing if there are fewer.
    void goInHistory(NavigationHistory::Way way, std::size_t steps);
    const NavigationHistory &history() const { return m_history; }
    void goUp();
    /// Shows an entry selected in its folder.
    void showEntry(const Location &entry);
    /// From the results of a search or tag to their folder, as it was left.
    void endResults();
    /// Goes where a row of the sidebar leads.
    void choose(const SidebarItem &item);
    const Location &home() const { return m_services.folders.home; }
    /// The folders of the history; Back and Forward also lead to results and pages that were shown between them.
    std::vector<Location> backStack() const { return m_history.folders(NavigationHistory::Way::Back, current.get()); }
    std::vector<Location> forwardStack() const
    {
        return m_history.folders(NavigationHistory::Way::Forward, current.get());
    }

    /// Creates "Neuer Ordner" and starts renaming it.
    void newFolder();
    /// Renames one selected entry inline, several with the batch rename sheet.
    void beginRenameSelection();
    void startRename(const FileItem &item);
    void setRenameText(const QString &text);
    enum class RenameNext { None, After, Before };
    /// Renames the item, and then begins to rename the row after or before it. A refused name stays in `renameText`.
    void commitRename(RenameNext then = RenameNext::None);
    /// The same when the editor loses the focus; a name that was refused already is given up.
    void leaveRename();
    void cancelRename();
    /// Whether a name is being given; the answer is outstanding.
    bool isRenaming() const { return m_change.running(); }
    void closeBatchRename();
    /// Sets the callback for new folders (`from` is empty) and renames made by this pane; undo records them.
    void onOwnChange(std::function<void(const Location &from, const Location &to)> told)
    {
        m_ownChange = std::move(told);
    }

private:
    /// What is selected and shown once the place is listed.
    struct Arrival {
        Selection selected;
        ViewPosition position;
        std::vector<Location> firstOf; ///< select the first that is listed
    };

    void read(FolderReader::For whom);
    void apply(FolderReader::Reading reading);
    void applyOutcome(const Listing &listing);
    void showNotAnswering();
    void showListing();
    void setItems(const FileItems &shown, std::optional<DisplayedItems> rows = std::nullopt);
    void display();
    void show(DisplayedItems rows);
    DisplayOptions displayOptions() const;
    bool needsDetails() const { return m_detailsShown || usesDetails(sortOrder.get()); }
    void readMissingDetails();
    void saveArrangement();
    void tellUnsaved(const Result<void> &saved);
    KnownFolderSize sizesOfFolders() const;
    void keepWhatIsThere();
    void requestSizes();
    void heardSizes();
    void updateTexts();
    QString selectionText() const;
    QString emptyTextNow() const;
    void clearError();

    void touch(const Location &folder, const FolderChanges &changes);

    void setPlace(const Place &to);
    void showPage(const Place &page);
    void openPage(const Place &page);
    void uncoverFolder();
    void go(const Location &folder, History history, std::optional<Arrival> then);
    void travel(const Location &folder, const std::function<void()> &arrived, const std::function<void()> &gone);
    void goToNearest();
    void arrive(const Location &folder, std::optional<Arrival> then);
    void arriveWith(Arrival wanted);
    void takeArrival();
    PlaceVisit visit() const;
    void record();
    void mirrorHistory();
    void revisit(const PlaceVisit &to);

    bool showsListing() const;
    void refresh();
    void openSearch(const Place &wanted);
    void startSearch(const QString &query);
    void openTag(const QString &tag);
    void leaveSearch();
    void leaveResults();
    void findTag();
    void search(SearchRun::Work work);
    void found(const FolderSearchResult &result);
    void ended(const FolderSearchResult &result);
    void showMatches();

    void create(const Location &wanted);
    void rename(const Location &from, const Location &to);
    void change(const Location &where, std::function<EntryChange(const JobControl &)> work);
    void changed(const EntryChange &made);
    void showChanged(const EntryChange &made);
    void renameCreated();
    bool isRenamed(const Location &entry) const;
    void refuseRename(const QString &reason);
    void finishRename();
    void beginNext(const Location &next);
    std::optional<Location> besideRenamed(RenameNext which) const;

    BrowserServices m_services;
    Place m_covered;                                   ///< the place that the page covers
    mutable std::optional<SelectionSummary> m_summary; ///< of `selection` in `items`; none until requested
    ItemFilter m_itemFilter;
    Arrangement m_arrangement; ///< chosen last
    bool m_detailsShown = false;
    bool m_detailsRead = false; ///< by the last reading
    int m_displayWish = 0;      ///< incremented when order or filter change
    int m_readWish = 0;         ///< value of `m_displayWish` that the reading sorts for
    bool m_readFailed = false;  ///< `errorMessage` says why the folder cannot be read
    bool m_restoring = false;   ///< restoring the view; do not save it
    std::size_t m_firstVisible = 0;
    std::size_t m_visibleCount = 0;

    NavigationHistory m_history;
    std::optional<Arrival> m_arrival;
    PaneFailure m_failure;

    FolderReader m_reader;              ///< keeps the listing while a search or tag replaces `items`
    FileCall<DisplayedItems> m_display; ///< sorts large lists
    SearchRun m_search;
    FileItems m_matches;                          ///< of the search, before filters chosen since it began
    SearchFilters m_ranWith;                      ///< the filters it began with
    FileCall<std::filesystem::file_type> m_check; ///< what the target is
    std::optional<QString> m_typed;               ///< what the target was typed as
    FileCall<Location> m_nearest;
    FileCall<EntryChange> m_change;
    FileCall<FileItems> m_update; ///< own changes in results
    std::function<void(const Location &, const Location &)> m_ownChange;
    QTimer m_searchSoon;
    QTimer m_displaySoon;
    std::optional<Location> m_renameNext;      ///< renamed after the current item
    std::optional<Location> m_renameAfterLoad; ///< just created; selected and renamed once listed
};

} // namespace brellin
