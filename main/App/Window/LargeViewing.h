#pragma once

#include "App/Window/WindowServices.h"
#include "Features/PreviewLoader.h"
#include "PhotoViewer/Viewing.h"

#include <QPointer>
#include <QTimer>

namespace brellin {

class LargeView;

/// Connects the large view of a window with a pane: shows its selected entry and lets the list follow. Several
/// selected are shown as one, then one after the other, and stay selected. Closes when the pane shows another place or a failure.
class LargeViewing : public QObject {
    Q_OBJECT
public:
    LargeViewing(const WindowServices &services, QWidget *window);
    ~LargeViewing() override;

    /// Does nothing if the pane has no entries.
    void open(BrowserModel &pane);
    void close();
    bool isOpen() const;
    /// Whether the selection is what is shown, so that a command for the selection is meant for it.
    bool showsSelection() const;

    Q_SIGNAL void openRequested(const brellin::FileItem &item);
    Q_SIGNAL void closed();

private:
    void followPane();
    void show(const Location &entry);
    void showSummary();
    Viewing viewing(std::size_t index, const std::vector<std::uint32_t> &among) const;
    void update();
    void showGone();
    std::vector<std::uint32_t> rows() const;
    std::optional<std::size_t> indexOf(const Location &entry, const std::vector<std::uint32_t> &rows) const;
    const FileItem *item() const;

    FolderSizes &m_sizes;
    PreviewLoader m_loader;
    LargeView *m_view;
    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following; ///< observes the pane while the view is open
    std::optional<Selection> m_among;     ///< the entries to go through, if several are selected; otherwise all
    std::optional<FileItem> m_item;       ///< the entry shown, as last listed
    QTimer m_soon;                        ///< coalesces the changes of one listing
};

} // namespace brellin
