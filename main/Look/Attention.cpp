#include "Look/Attention.h"

#include <QApplication>
#include <QWidget>

namespace brellin {

Attention attentionTo(const QWidget &window)
{
    const QWidget *active = QApplication::activeWindow();
    if (!active)
        return Attention::Away;
    while (active && active != &window)
        active = active->parentWidget();
    return active ? Attention::Here : Attention::Elsewhere;
}

} // namespace brellin
