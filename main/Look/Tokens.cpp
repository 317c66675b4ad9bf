#include "Look/Tokens.h"

#include <cmath>

namespace brellin {

namespace {

struct Pair {
    QRgb light;
    QRgb dark;
};

constexpr std::array<Pair, tokenCount> colors{{
    {0xF5F6F8, 0x1D1F23}, // Window
    {0xECEEF2, 0x24272C}, // Sidebar
    {0xFFFFFF, 0x16181B}, // Content
    {0xFFFFFF, 0x23262B}, // Card
    {0xF8F9FB, 0x1A1C20}, // Zebra
    {0xDFE2E7, 0x33373D}, // Line
    {0x1C1E21, 0xE9EBEE}, // Text
    {0x5E636B, 0xA2A8B0}, // Secondary
    {0x646A72, 0x9298A1}, // Tertiary
    {0x7F858E, 0x70767F}, // FieldBorder
    {0x0B6E78, 0x43B5BF}, // Accent
    {0xDCEFF0, 0x17393D}, // AccentSoft
    {0xFFFFFF, 0x0C1517}, // OnAccent
    {0x8A5800, 0xE7B04F}, // Warning
    {0xFFF3DC, 0x3A2E17}, // WarningSoft
    {0xB82F25, 0xF0766C}, // Danger
    {0xFCE7E5, 0x3D2220}, // DangerSoft
    {0x276F38, 0x6CC281}, // Success
    {0x58A6C8, 0x5FB0D3}  // Folder
}};

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

QColor tokenColor(Token token, Appearance appearance)
{
    const Pair &pair = colors.at(static_cast<std::size_t>(token));
    return QColor::fromRgb(0xFF000000 | (appearance == Appearance::Light ? pair.light : pair.dark));
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return first > second ? first / second : second / first;
}

QColor readableOn(const QColor &ground)
{
    return contrast(ground, Qt::black) > contrast(ground, Qt::white) ? Qt::black : Qt::white;
}

} // namespace brellin
