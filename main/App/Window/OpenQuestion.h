#pragma once

#include "Base/Location.h"
#include "Look/Cards.h"

namespace brellin {

/// Asks before a program is started by opening it.
class OpenQuestion : public SheetFrame {
    Q_OBJECT
public:
    OpenQuestion(const Location &program, QWidget *window);
    Q_SIGNAL void confirmed();
};

} // namespace brellin
