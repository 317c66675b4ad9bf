#pragma once

#include <QColor>

#include <array>

namespace brellin {

enum class Appearance { Light, Dark };

/// The colours of all screens by purpose. Screens use only these.
enum class Token {
    Window, ///< toolbar, tab bar, status bar, pages
    Sidebar,
    Content, ///< lists, fields
    Card,    ///< cards, sheets, panels
    Zebra,   ///< alternating rows
    Line,    ///< separators
    Text,
    Secondary,
    Tertiary, ///< Secondary instead on a selected row
    FieldBorder,
    Accent, ///< selection, primary button, active symbol
    AccentSoft,
    OnAccent,
    Warning,
    WarningSoft,
    Danger, ///< Trash, failures
    DangerSoft,
    Success,
    Folder ///< folders without a colour of their own
};
inline constexpr std::size_t tokenCount = 19;

QColor tokenColor(Token token, Appearance appearance);

/// Contrast ratio of two opaque colours, 1 … 21 (WCAG 2).
double contrast(const QColor &a, const QColor &b);
/// Black or white, whichever has the higher contrast on `ground`.
QColor readableOn(const QColor &ground);

} // namespace brellin
