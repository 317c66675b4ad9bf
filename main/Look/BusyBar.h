#pragma once

#include <QProgressBar>

namespace brellin {

/// Whether widgets below the bar move up when it hides.
enum class WhenHidden { KeepsRoom, GivesRoom };

/// An indeterminate progress bar. `what` is its text for screen readers.
QProgressBar *makeBusyBar(const QString &what, const QString &objectName, WhenHidden room, QWidget *parent);

} // namespace brellin
