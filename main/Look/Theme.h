#pragma once

#include "Look/Tokens.h"

#include <QFont>
#include <QObject>

class QApplication;

namespace brellin {

/// The look of the whole application: appearance, palette, fonts and the style of the usual controls. There is one, made
/// by `install`; screens read it through the functions below and repaint on `changed`.
class Theme : public QObject {
    Q_OBJECT
public:
    /// Dresses the application. Until then, and in a program without it, the light appearance holds.
    static Theme &install(QApplication &application);
    static Theme &shared();

    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);
    /// Whether things may move to explain themselves.
    bool motion() const { return m_motion; }
    void setMotion(bool motion);
    /// The application font's size in relation to the one the look was drawn with (1 = 13 px on a screen of 96 dpi).
    void setFontFactor(double factor);

    Q_SIGNAL void changed();

private:
    Theme() = default;
    void dress();

    Appearance m_appearance = Appearance::Light;
    bool m_motion = true;
    double m_fontFactor = 1;
};

/// A colour in today's appearance.
QColor color(Token token);
/// A colour with less weight, `share` of 0 … 1, for hover grounds and disabled symbols.
QColor faded(Token token, double share);

/// The application font, `factor` times as large (body 1, secondary 0.92, heads of sections 0.85, titles of pages 1.7–2).
QFont sizedFont(double factor = 1, QFont::Weight weight = QFont::Normal);
/// A length drawn for the font of 13 px, in that of today: heights and symbols grow with the font.
int scaled(double pixels);

} // namespace brellin
