#pragma once

#include "Base/Location.h"
#include "Features/EntryMove.h"

#include <QWidget>

#include <memory>

namespace brellin {

class TrashList;
struct TrashReturn;

/// The "Papierkorb" page: the contents of all volumes' Trash folders, with restoring.
class TrashPage : public QWidget {
    Q_OBJECT
public:
    /// The list must outlive the page.
    TrashPage(TrashList &trash, QWidget *parent);
    ~TrashPage() override;

    /// "Ort zeigen": asks to show the folder an entry came from.
    Q_SIGNAL void placeWanted(const brellin::Location &folder);
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
