#pragma once

#include <QProgressBar>

namespace brellin {

/// Whether what stands below a bar moves up when it hides.
enum class WhenHidden { KeepsRoom, GivesRoom };

/// A bar that says that something is under way, nobody knows how far. `what` is said aloud in its place.
QProgressBar *makeBusyBar(const QString &what, const QString &objectName, WhenHidden room, QWidget *parent);

} // namespace brellin
