#pragma once

#include "Look/Tokens.h"

#include <QFont>
#include <QObject>

class QApplication;

namespace brellin {

/// The theme of the application: appearance, palette, fonts and style sheet. A singleton created by `install`; screens
/// use the functions below and repaint on `changed`.
class Theme : public QObject {
    Q_OBJECT
public:
    /// Applies the theme to the application. Without it the light appearance is used.
    static Theme &install(QApplication &application);
    static Theme &shared();

    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);
    /// Whether animations are allowed.
    bool motion() const { return m_motion; }
    void setMotion(bool motion);
    /// The ratio of the application's font size to the design's (1 = 13 px at 96 dpi).
    void setFontFactor(double factor);

    Q_SIGNAL void changed();

private:
    Theme() = default;
    void dress();

    Appearance m_appearance = Appearance::Light;
    bool m_motion = true;
    double m_fontFactor = 1;
};

/// A colour in the present appearance.
QColor color(Token token);
/// A colour with its opacity reduced to `share` (0 … 1), for hover backgrounds and disabled symbols.
QColor faded(Token token, double share);

/// The application font scaled by `factor` (body 1, secondary 0.92, section headings 0.85, page titles 1.7–2).
QFont sizedFont(double factor = 1, QFont::Weight weight = QFont::Normal);
/// Scales a length designed for the 13 px font to the present font size.
int scaled(double pixels);

} // namespace brellin
