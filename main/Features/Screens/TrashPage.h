#pragma once

#include "Base/EntryFailure.h"
#include "Base/Location.h"
#include "Features/EntryMove.h"

#include <QWidget>

#include <memory>

namespace brellin {

class KnownFolders;
class TrashList;
struct TrashReturn;

/// The "Papierkorb" page: the contents of all volumes' Trash folders, with restoring. The caller asks and deletes.
class TrashPage : public QWidget {
    Q_OBJECT
public:
    /// List and folders must outlive the page.
    TrashPage(TrashList &trash, const KnownFolders &folders, QWidget *parent);
    ~TrashPage() override;

    /// Tells the outcome of a permanent deletion, and reads the list again.
    void tellDeleted(const EntryFailures &failures, bool cancelled);

    /// "Ort zeigen": asks to show the folder an entry came from.
    Q_SIGNAL void placeWanted(const brellin::Location &folder);
    Q_SIGNAL void emptyWanted();
    /// Asks to delete these entries of the Trash permanently.
    Q_SIGNAL void deleteWanted(const std::vector<brellin::Location> &places);
    Q_SIGNAL void returned(const std::vector<brellin::EntryMove> &moves);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
