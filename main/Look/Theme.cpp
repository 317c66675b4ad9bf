#include "Look/Theme.h"

#include "Look/StyleSheet.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPalette>
#include <QStyleFactory>

#include <cmath>

static void initialiseResources()
{
    Q_INIT_RESOURCE(look); // needed for resources in a static library
}

namespace brellin {

namespace {

/// 13 px at 96 dpi
constexpr double drawnPointSize = 9.75;

QPalette paletteOf(Appearance appearance)
{
    const auto of = [appearance](Token token) { return tokenColor(token, appearance); };
    QPalette palette(of(Token::Text), of(Token::Window), of(Token::Content), of(Token::Line), of(Token::FieldBorder),
                     of(Token::Text), of(Token::Content));
    palette.setColor(QPalette::AlternateBase, of(Token::Zebra));
    palette.setColor(QPalette::Window, of(Token::Window));
    palette.setColor(QPalette::Button, of(Token::Content));
    palette.setColor(QPalette::Highlight, of(Token::Accent));
    palette.setColor(QPalette::HighlightedText, of(Token::OnAccent));
    palette.setColor(QPalette::Link, of(Token::Accent));
    palette.setColor(QPalette::LinkVisited, of(Token::Accent));
    palette.setColor(QPalette::ToolTipBase, of(Token::Card));
    palette.setColor(QPalette::ToolTipText, of(Token::Text));
    palette.setColor(QPalette::PlaceholderText, of(Token::Tertiary));
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        QColor faint = of(Token::Tertiary);
        faint.setAlphaF(0.6F);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

QFont applicationFont(double factor)
{
    QFont made = QGuiApplication::font();
    const QString wanted = QStringLiteral("Inter");
    if (QFontDatabase::families().contains(wanted))
        made.setFamilies({wanted});
    made.setPointSizeF(drawnPointSize * factor);
    return made;
}

} // namespace

Theme &Theme::shared()
{
    static Theme theme;
    return theme;
}

Theme &Theme::install(QApplication &application)
{
    initialiseResources();
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    application.setEffectEnabled(Qt::UI_AnimateMenu, false);
    shared().dress();
    return shared();
}

void Theme::setAppearance(Appearance appearance)
{
    if (m_appearance == appearance)
        return;
    m_appearance = appearance;
    dress();
}

void Theme::setMotion(bool motion)
{
    m_motion = motion;
}

void Theme::setFontFactor(double factor)
{
    if (m_fontFactor == factor)
        return;
    m_fontFactor = factor;
    dress();
}

void Theme::dress()
{
    if (!qApp)
        return;
    QApplication::setFont(applicationFont(m_fontFactor));
    QApplication::setPalette(paletteOf(m_appearance));
    qApp->setStyleSheet(styleSheet(m_appearance));
    Q_EMIT changed();
}

QColor color(Token token)
{
    return tokenColor(token, Theme::shared().appearance());
}

QColor faded(Token token, double share)
{
    QColor made = color(token);
    made.setAlphaF(static_cast<float>(share));
    return made;
}

QFont sizedFont(double factor, QFont::Weight weight)
{
    QFont made = QApplication::font();
    made.setPointSizeF(made.pointSizeF() * factor);
    made.setWeight(weight);
    return made;
}

int scaled(double pixels)
{
    const double points = QApplication::font().pointSizeF();
    return static_cast<int>(std::lround(pixels * (points > 0 ? points / drawnPointSize : 1)));
}

} // namespace brellin
