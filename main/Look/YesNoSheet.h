#pragma once

#include "Look/Buttons.h"
#include "Look/Cards.h"

namespace brellin {

/// A question with one thing to do and a way out ("Abbrechen"), which has the keys and is what Esc answers.
class YesNoSheet : public SheetFrame {
    Q_OBJECT
public:
    YesNoSheet(const QString &question, const QString &explanation, const QString &accept, ButtonKind kind,
               QWidget *window, const QString &decline = QStringLiteral("Abbrechen"));

    /// Exactly one of the two, before `closed`.
    Q_SIGNAL void accepted();
    Q_SIGNAL void declined();

protected:
    void escape() override;
};

} // namespace brellin
