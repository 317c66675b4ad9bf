#include "Look/BusyBar.h"

namespace brellin {

QProgressBar *makeBusyBar(const QString &what, const QString &objectName, WhenHidden room, QWidget *parent)
{
    auto *const bar = new QProgressBar(parent);
    bar->setObjectName(objectName);
    bar->setAccessibleName(what);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    QSizePolicy policy = bar->sizePolicy();
    policy.setRetainSizeWhenHidden(room == WhenHidden::KeepsRoom);
    bar->setSizePolicy(policy);
    return bar;
}

} // namespace brellin
