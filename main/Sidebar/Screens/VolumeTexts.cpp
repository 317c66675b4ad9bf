#include "Sidebar/Screens/VolumeTexts.h"

#include "Base/German.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

QString freeText(const VolumeEntry &volume)
{
    return roundedSize(volume.space->free) + QStringLiteral(" frei");
}

} // namespace

QString volumeNote(const VolumeEntry &volume)
{
    if (!volume.answering)
        return QStringLiteral("antwortet nicht");
    return volume.space ? freeText(volume) : QString();
}

QString volumeToolTip(const VolumeEntry &volume)
{
    QStringList lines{shown(volume.root)};
    if (volume.space)
        lines << QStringLiteral("%1 von %2").arg(freeText(volume), roundedSize(volume.space->capacity));
    if (!volume.answering)
        lines << QStringLiteral("Der Server antwortet gerade nicht.");
    return lines.join(u'\n');
}

QString volumeSymbol(const VolumeEntry &volume)
{
    if (!volume.answering)
        return QStringLiteral("wifi-off");
    if (!volume.local)
        return QStringLiteral("network");
    return volume.ejectable ? QStringLiteral("usb") : QStringLiteral("externaldrive");
}

std::optional<double> usedShare(const VolumeEntry &volume)
{
    if (!volume.space || volume.space->capacity <= 0)
        return std::nullopt;
    const double share = static_cast<double>(volume.space->free) / static_cast<double>(volume.space->capacity);
    return std::clamp(1 - share, 0.0, 1.0);
}

QString roundedSize(qint64 bytes)
{
    struct Unit {
        double size = 0;
        QStringView name;
    };
    constexpr Unit units[] = {{1e12, u"TB"}, {1e9, u"GB"}, {1e6, u"MB"}};
    for (const Unit &unit : units) {
        const double count = static_cast<double>(bytes) / unit.size;
        if (count < 0.9995)
            continue;
        const double tenths = std::round(count * 10) / 10;
        const bool whole = tenths >= 10 || tenths == std::floor(tenths);
        return german().toString(whole ? std::round(count) : tenths, 'f', whole ? 0 : 1) + u' ' + unit.name.toString();
    }
    return sizeText(bytes);
}

} // namespace brellin
