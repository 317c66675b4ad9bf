#include "Look/FocusRing.h"

#include <QApplication>

namespace brellin {

bool focusWithin(QWidget &whole, bool next)
{
    QWidget *candidate = QApplication::focusWidget() ? QApplication::focusWidget() : &whole;
    for (QWidget *const start = candidate; candidate;) {
        candidate = next ? candidate->nextInFocusChain() : candidate->previousInFocusChain();
        if (candidate == start)
            break;
        if (candidate != &whole && whole.isAncestorOf(candidate) && candidate->isVisibleTo(&whole) &&
            candidate->isEnabled() && candidate->focusPolicy() & Qt::TabFocus) {
            candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
    return false;
}

} // namespace brellin
