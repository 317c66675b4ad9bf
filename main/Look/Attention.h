#pragma once

class QWidget;

namespace brellin {

/// Where the user's focus is, for deciding which window may ask or notify.
enum class Attention {
    Here,      ///< in this window or one of its dialogs
    Elsewhere, ///< in another window of the program
    Away       ///< in no window of the program: any window may ask
};
/// Changes with QGuiApplication::focusWindowChanged, but has its new value only after that signal (use a queued
/// connection).
Attention attentionTo(const QWidget &window);

} // namespace brellin
