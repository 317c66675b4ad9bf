#pragma once

#include "Look/Buttons.h"
#include "Look/SheetFrame.h"

namespace brellin {

/// A question with one action and "Abbrechen", which is focused first and is what Esc chooses.
class YesNoSheet : public SheetFrame {
    Q_OBJECT
public:
    YesNoSheet(const QString &question, const QString &explanation, const QString &accept, ButtonKind kind,
               QWidget *window, const QString &decline = QStringLiteral("Abbrechen"));

    /// Exactly one of the two is emitted, before `closed`.
    Q_SIGNAL void accepted();
    Q_SIGNAL void declined();

protected:
    void escape() override;
};

} // namespace brellin
