#pragma once

#include <QColor>

#include <array>

namespace brellin {

enum class Appearance { Light, Dark };

/// The colours of every screen, by what they are for. A screen names these and never a colour of its own.
enum class Token {
    Window, ///< toolbar, tab bar, status bar, pages
    Sidebar,
    Content, ///< lists, fields
    Card,    ///< cards, sheets, panels
    Zebra,   ///< every second row
    Line,    ///< separators
    Text,
    Secondary,
    Tertiary, ///< becomes Secondary on a selected row
    FieldBorder,
    Accent, ///< selection, primary button, active symbol
    AccentSoft,
    OnAccent,
    Warning,
    WarningSoft,
    Danger, ///< Papierkorb, failures
    DangerSoft,
    Success,
    Folder ///< the folder's shape where it has no colour of its own
};
inline constexpr std::size_t tokenCount = 19;

QColor tokenColor(Token token, Appearance appearance);

/// Contrast of two opaque colours, 1 … 21 (WCAG 2: relative luminances, each with 0.05 added).
double contrast(const QColor &a, const QColor &b);
/// Black or white, whichever is read better on `ground`.
QColor readableOn(const QColor &ground);

} // namespace brellin
