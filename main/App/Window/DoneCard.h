#pragma once

#include "Look/Cards.h"
#include "Look/Labels.h"

#include <QTimer>

namespace brellin {

/// A card at the lower right that says what a step did and takes it back. Disappears after a while, but not while the
/// pointer is over it.
class DoneCard : public Card {
    Q_OBJECT
public:
    explicit DoneCard(QWidget *window);

    /// „2 Dateien nach „Rechnungen“ kopiert“ and the names.
    void tell(const QString &what, const QString &names);
    /// Places the card at the lower right of this area of the window, above `over` if that is visible.
    void placeIn(const QRect &area, const QWidget *over);

    Q_SIGNAL void undoRequested();
    /// The card is about to appear, or its size has changed.
    Q_SIGNAL void placeWanted();

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    TextLabel *m_what;
    ElidedLabel *m_names;
    QTimer m_ends;
};

} // namespace brellin
