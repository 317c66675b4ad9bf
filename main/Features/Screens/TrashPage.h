#pragma once

#include "Base/Location.h"

#include <QWidget>

#include <memory>

namespace brellin {

class TrashList;
struct TrashReturn;

/// The place "Papierkorb": what lies in the Trash of every volume, from which entries are put back where they came from.
class TrashPage : public QWidget {
    Q_OBJECT
public:
    /// The list outlives the page.
    TrashPage(TrashList &trash, QWidget *parent);
    ~TrashPage() override;

    /// "Ort zeigen": the folder in which an entry was.
    Q_SIGNAL void placeWanted(const brellin::Location &folder);
    /// Entries lie here again.
    Q_SIGNAL void returned(const std::vector<brellin::Location> &places);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
