#pragma once

class QWidget;

namespace brellin {

/// Where the user is, for what wants to be asked or told over a window.
enum class Attention {
    Here,      ///< in this window or a dialog of its own
    Elsewhere, ///< in another window of the program
    Away       ///< in none: every window may speak
};
/// What changes it is told by QGuiApplication::focusWindowChanged, and settled only after that signal.
Attention attentionTo(const QWidget &window);

} // namespace brellin
