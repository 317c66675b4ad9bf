#pragma once

#include "Look/Cards.h"

namespace brellin {

/// Asks over an editor whether what was edited may be lost. Esc and the button with the keys go on editing.
class DiscardQuestion : public SheetFrame {
    Q_OBJECT
public:
    DiscardQuestion(const QString &explanation, QWidget *editor);

    /// Before `closed`; nothing where the user goes on.
    Q_SIGNAL void accepted();
};

} // namespace brellin
