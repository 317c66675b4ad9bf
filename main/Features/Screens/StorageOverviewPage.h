#pragma once

#include "Base/Location.h"
#include "Places/VolumeList.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace brellin {

class StorageOverview;

/// The page "Speicherplatz": where the space of a folder goes, as tiles and as a list that go together. It shows what its
/// overview counts, while it counts.
class StorageOverviewPage : public QWidget {
    Q_OBJECT
public:
    /// The overview outlives the page. `askSpace` is called on a worker.
    StorageOverviewPage(StorageOverview &overview, QWidget *parent, VolumeList::AskSpace askSpace = volumeSpace);
    ~StorageOverviewPage() override;

    /// A folder is to be shown in a pane, or the folder of a file with the file selected.
    Q_SIGNAL void openWanted(const brellin::Location &entry);
    /// To be asked about and moved to the Trash by whoever hears it, who then tells the overview.
    Q_SIGNAL void trashWanted(const std::vector<brellin::Location> &entries);
    /// Up from the folder that was counted.
    Q_SIGNAL void leaveWanted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
