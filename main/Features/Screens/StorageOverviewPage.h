#pragma once

#include "Base/Location.h"
#include "Places/VolumeList.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace brellin {

class StorageOverview;

/// The "Speicherplatz" page: the space used in a folder, as a treemap and a synchronised list. Updates while the
/// overview is counting.
class StorageOverviewPage : public QWidget {
    Q_OBJECT
public:
    /// The overview must outlive the page. `askSpace` is called on a worker.
    StorageOverviewPage(StorageOverview &overview, QWidget *parent, VolumeList::AskSpace askSpace = volumeSpace);
    ~StorageOverviewPage() override;

    /// Asks to show a folder in a pane, or a file selected in its folder.
    Q_SIGNAL void openWanted(const brellin::Location &entry);
    /// Asks for confirmation and trashing; the receiver then informs the overview.
    Q_SIGNAL void trashWanted(const std::vector<brellin::Location> &entries);
    /// The user wants to go up from the counted folder.
    Q_SIGNAL void leaveWanted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
